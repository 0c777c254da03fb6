// The aerial view's searches for processors with AVX-512: sixteen samples or cells at once.
#include <immintrin.h>

#include "depth/aerial_kernels.h"
#include "depth/depth_false_color.h"

namespace velmorn {
namespace {

struct VectorGrid {
  __m512 x1, y1, x2, y2, resolution;
  __m512i width;

  explicit VectorGrid(const AerialGrid& grid)
      : x1(_mm512_set1_ps(grid.region.x1)),
        y1(_mm512_set1_ps(grid.region.y1)),
        x2(_mm512_set1_ps(grid.region.x2)),
        y2(_mm512_set1_ps(grid.region.y2)),
        resolution(_mm512_set1_ps(grid.resolution)),
        width(_mm512_set1_epi32(grid.width)) {}
};

struct Points {
  __m512 x, y;
};

// One row of firstFromCam times the points (x, y, d).
struct VectorRow {
  __m512 rx, ry, rz, t;

  VectorRow(float x, float y, float z, float shift)
      : rx(_mm512_set1_ps(x)),
        ry(_mm512_set1_ps(y)),
        rz(_mm512_set1_ps(z)),
        t(_mm512_set1_ps(shift)) {}

  __m512 times(const Points& p, __m512 d) const {
    const __m512 xy = _mm512_add_ps(_mm512_mul_ps(rx, p.x), _mm512_mul_ps(ry, p.y));
    return _mm512_add_ps(_mm512_add_ps(xy, _mm512_mul_ps(rz, d)), t);
  }
};

// Bit i is set for a point inside; false for NaN.
__mmask16 insideGrid(const Points& p, const VectorGrid& grid, __mmask16 of) {
  of = _mm512_mask_cmp_ps_mask(of, grid.x1, p.x, _CMP_LT_OQ);
  of = _mm512_mask_cmp_ps_mask(of, p.x, grid.x2, _CMP_LT_OQ);
  of = _mm512_mask_cmp_ps_mask(of, grid.y1, p.y, _CMP_LT_OQ);
  return _mm512_mask_cmp_ps_mask(of, p.y, grid.y2, _CMP_LT_OQ);
}

__m512i cellsOf(const Points& p, const VectorGrid& grid) {
  const __m512 column = _mm512_div_ps(_mm512_sub_ps(p.x, grid.x1), grid.resolution);
  const __m512 row = _mm512_div_ps(_mm512_sub_ps(p.y, grid.y1), grid.resolution);
  return _mm512_add_epi32(_mm512_mullo_epi32(_mm512_cvttps_epi32(row), grid.width),
                          _mm512_cvttps_epi32(column));
}

// Of neighbours with the same cell the one that cannot win is left out: the farther one, of equals
// the second, as the offset is in the lower half of a sample.
__mmask16 withoutBeaten(__mmask16 inside, __m512i cell, __m512i sample) {
  const __m512i noCell = _mm512_set1_epi32(-2);
  const __m512i nextCell = _mm512_alignr_epi32(noCell, cell, 1);
  const __m512i nextSample = _mm512_alignr_epi32(sample, sample, 1);
  const __mmask16 same = _mm512_cmpeq_epi32_mask(cell, nextCell);
  const __mmask16 beatenByNext = _mm512_mask_cmplt_epu32_mask(same, nextSample, sample);
  const __mmask16 nextBeaten = _kshiftli_mask16(_kandn_mask16(beatenByNext, same), 1);
  return _kandn_mask16(_kor_mask16(beatenByNext, nextBeaten), inside);
}

// Are the stretch's samples so close together that many neighbours share a cell? Otherwise it takes
// less time to bring them in than to look for the beaten ones. A guess by one sample will do.
bool shareCells(const DepthStretch& stretch, const AerialGrid& grid) {
  constexpr float kCloseCells = 0.8F;
  const int i = stretch.n / 2;
  if (i == 0) return false;
  const float distance = (stretch.columnFactors[i] - stretch.columnFactors[i - 1]) *
                         static_cast<float>(stretch.depth[i]);
  return distance < kCloseCells * grid.resolution && -distance < kCloseCells * grid.resolution;
}

// Sixteen samples of a stretch, those from `first` on.
struct Sixteen {
  int first;
  __mmask16 part; // lanes that the stretch has
  __mmask16 kept; // lanes that are listed
  __m512i depth, cell;

  __m512i offsets() const {
    const __m512i lanes = _mm512_setr_epi32(0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15);
    return _mm512_add_epi32(lanes, _mm512_set1_epi32(first));
  }
  __m512i listed() const { return _mm512_or_si512(_mm512_slli_epi32(depth, 16), offsets()); }
};

template <bool leavesOutBeaten, typename Append>
void listAll(const DepthStretch& stretch, const CameraFactors& camera, const AerialGrid& grid,
             Append& append) {
  const VectorGrid vectorGrid(grid);
  const VectorRow rowX(camera.r00, camera.r01, camera.r02, camera.t0);
  const VectorRow rowY(camera.r10, camera.r11, camera.r12, camera.t1);
  const __m512 rowFactor = _mm512_set1_ps(stretch.rowFactor);

  for (int i = 0; i < stretch.n; i += 16) {
    const int rest = stretch.n - i;
    const auto part = static_cast<__mmask16>(rest < 16 ? (1U << rest) - 1 : 0xFFFFU);
    const __m512i depth = _mm512_cvtepu16_epi32(_mm256_maskz_loadu_epi16(part, stretch.depth + i));
    const __m512 d = _mm512_cvtepi32_ps(depth);
    const __m512 factors = _mm512_maskz_loadu_ps(part, stretch.columnFactors + i);
    Points p{_mm512_mul_ps(factors, d), _mm512_mul_ps(rowFactor, d)};
    if (!camera.isFirst) p = {rowX.times(p, d), rowY.times(p, d)};
    const __mmask16 inside =
        insideGrid(p, vectorGrid, _mm512_test_epi32_mask(depth, depth)); // rests have depth 0
    if (inside == 0) continue; // often whole sides of an image

    // Samples outside have the cell -1: they beat none inside.
    const __m512i cell =
        _mm512_mask_mov_epi32(_mm512_set1_epi32(-1), inside, cellsOf(p, vectorGrid));
    Sixteen samples{i, part, inside, depth, cell};
    if (leavesOutBeaten) samples.kept = withoutBeaten(inside, cell, samples.listed());
    append(samples);
  }
}

// The cells, which both lists have.
struct CellList {
  std::int32_t* cells;
  int length = 0;

  void append(const Sixteen& s) {
    _mm512_storeu_si512(cells + length, _mm512_maskz_compress_epi32(s.kept, s.cell));
    length += __builtin_popcount(s.kept);
  }
};

struct AppendSamples {
  Listed* samples;
  CellList list;

  void operator()(const Sixteen& s) {
    _mm512_storeu_si512(samples + list.length, _mm512_maskz_compress_epi32(s.kept, s.listed()));
    list.append(s);
  }
};

struct AppendKeys {
  NumberedPixels pixels;
  SampleKey* keys;
  CellList list;

  // A pixel's three bytes in every lane.
  __m512i colors(const Sixteen& s) const {
    const __mmask64 part = (__mmask64{1} << 3 * __builtin_popcount(s.part)) - 1;
    const __m512i bytes = _mm512_maskz_loadu_epi8(part, pixels.bytes + 3 * s.first);
    // Twelve bytes to each 128 bits.
    const __m512i fourEach = _mm512_permutexvar_epi32(
        _mm512_setr_epi32(0, 1, 2, 2, 3, 4, 5, 5, 6, 7, 8, 8, 9, 10, 11, 11), bytes);
    return _mm512_shuffle_epi8(
        fourEach, _mm512_broadcast_i32x4(
                      _mm_setr_epi8(0, 1, 2, -1, 3, 4, 5, -1, 6, 7, 8, -1, 9, 10, 11, -1)));
  }

  void operator()(const Sixteen& s) {
    const __m512i number =
        _mm512_add_epi32(s.offsets(), _mm512_set1_epi32(static_cast<int>(pixels.first)));
    const __m512i upper =
        _mm512_or_si512(_mm512_slli_epi32(s.depth, 16), _mm512_srli_epi32(number, 8));
    const __m512i lower = _mm512_or_si512(_mm512_slli_epi32(number, 24), colors(s));
    const __m512i first = _mm512_permutex2var_epi32(
        lower, _mm512_setr_epi32(0, 16, 1, 17, 2, 18, 3, 19, 4, 20, 5, 21, 6, 22, 7, 23), upper);
    const __m512i second = _mm512_permutex2var_epi32(
        lower, _mm512_setr_epi32(8, 24, 9, 25, 10, 26, 11, 27, 12, 28, 13, 29, 14, 30, 15, 31),
        upper);
    const auto keptFirst = static_cast<__mmask8>(s.kept),
               keptSecond = static_cast<__mmask8>(s.kept >> 8);
    SampleKey* const end = keys + list.length;
    _mm512_storeu_si512(end, _mm512_maskz_compress_epi64(keptFirst, first));
    _mm512_storeu_si512(end + __builtin_popcount(keptFirst),
                        _mm512_maskz_compress_epi64(keptSecond, second));
    list.append(s);
  }
};

template <typename Append>
int listInto(Append append, const DepthStretch& stretch, const CameraFactors& camera,
             const AerialGrid& grid) {
  if (shareCells(stretch, grid))
    listAll<true>(stretch, camera, grid, append);
  else
    listAll<false>(stretch, camera, grid, append);
  return append.list.length;
}

int listSamples(const DepthStretch& stretch, const CameraFactors& camera, const AerialGrid& grid,
                Listed* samples, std::int32_t* cells) {
  return listInto(AppendSamples{samples, {cells}}, stretch, camera, grid);
}

int listKeys(const DepthStretch& stretch, const NumberedPixels& pixels, const CameraFactors& camera,
             const AerialGrid& grid, SampleKey* keys, std::int32_t* cells) {
  return listInto(AppendKeys{pixels, keys, {cells}}, stretch, camera, grid);
}

void showKeys(const SampleKey* keys, std::size_t n, unsigned char* image) {
  const __m512i bytes =
      _mm512_broadcast_i32x4(_mm_setr_epi8(0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, -1, -1, -1, -1));
  const __m512i twelveEach =
      _mm512_setr_epi32(0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, 15, 15, 15, 15);
  std::size_t i = 0;
  for (; i + 16 <= n; i += 16) {
    const __m256i first = _mm512_cvtepi64_epi32(_mm512_loadu_si512(keys + i)),
                  second = _mm512_cvtepi64_epi32(_mm512_loadu_si512(keys + i + 8));
    const __m512i colors = _mm512_inserti64x4(_mm512_castsi256_si512(first), second, 1);
    _mm512_mask_storeu_epi8(
        image + 3 * i, 0xFFFFFFFFFFFF,
        _mm512_permutexvar_epi32(twelveEach, _mm512_shuffle_epi8(colors, bytes)));
  }
  plainAerialKernels().showKeys(keys + i, n - i, image + 3 * i);
}

CellRange findRange(const std::int32_t* cells, int n) {
  __m512i first = _mm512_set1_epi32(cells[0]), last = first;
  for (int i = 0; i < n; i += 16) {
    const int rest = n - i;
    const auto part = static_cast<__mmask16>(rest < 16 ? (1U << rest) - 1 : 0xFFFFU);
    const __m512i cell = _mm512_maskz_loadu_epi32(part, cells + i);
    first = _mm512_mask_min_epi32(first, part, first, cell);
    last = _mm512_mask_max_epi32(last, part, last, cell);
  }
  return {_mm512_reduce_min_epi32(first), _mm512_reduce_max_epi32(last)};
}

// Appends the sixteen cells' elements that are chosen, returns the new length.
int appendCovered(__m256i depth, int first, __mmask16 chosen, Listed* covered, int length) {
  const __m512i lanes = _mm512_setr_epi32(0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15);
  const __m512i element = _mm512_or_si512(_mm512_slli_epi32(_mm512_cvtepu16_epi32(depth), 16),
                                          _mm512_add_epi32(lanes, _mm512_set1_epi32(first)));
  _mm512_storeu_si512(covered + length, _mm512_maskz_compress_epi32(chosen, element));
  return length + __builtin_popcount(chosen);
}

CoveredCells listCovered(const std::uint16_t* depth, int n, Listed* covered) {
  const __m512i empty = _mm512_set1_epi16(static_cast<short>(kEmptyCell));
  __m512i bits = _mm512_setzero_si512(); // two depths to a lane
  int length = 0;
  for (int i = 0; i < n; i += 32) {
    const int rest = n - i;
    const __mmask32 part = rest < 32 ? (1U << rest) - 1 : 0xFFFFFFFFU;
    const __m512i cells = _mm512_maskz_loadu_epi16(part, depth + i);
    const __mmask32 hasDepth = _mm512_mask_cmpneq_epi16_mask(part, cells, empty);
    bits = _mm512_or_si512(bits, _mm512_maskz_mov_epi16(hasDepth, cells));
    length = appendCovered(_mm512_castsi512_si256(cells), i, static_cast<__mmask16>(hasDepth),
                           covered, length);
    length = appendCovered(_mm512_extracti64x4_epi64(cells, 1), i + 16,
                           static_cast<__mmask16>(hasDepth >> 16), covered, length);
  }
  const auto lanes = static_cast<std::uint32_t>(_mm512_reduce_or_epi32(bits));
  return {length, static_cast<std::uint16_t>(lanes | lanes >> 16)};
}

} // namespace

const AerialKernels& avx512AerialKernels() {
  static const AerialKernels kernels{listSamples, listKeys, showKeys, findRange, listCovered};
  return kernels;
}

} // namespace velmorn
