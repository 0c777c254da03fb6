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

template <bool leavesOutBeaten>
int listAll(const DepthStretch& stretch, const CameraFactors& camera, const AerialGrid& grid,
            Listed* samples, std::int32_t* cells) {
  const VectorGrid vectorGrid(grid);
  const VectorRow rowX(camera.r00, camera.r01, camera.r02, camera.t0);
  const VectorRow rowY(camera.r10, camera.r11, camera.r12, camera.t1);
  const __m512 rowFactor = _mm512_set1_ps(stretch.rowFactor);
  const __m512i lanes = _mm512_setr_epi32(0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15);

  int length = 0;
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
    const __m512i sample = _mm512_or_si512(_mm512_slli_epi32(depth, 16),
                                           _mm512_add_epi32(lanes, _mm512_set1_epi32(i)));
    const __mmask16 kept = leavesOutBeaten ? withoutBeaten(inside, cell, sample) : inside;
    _mm512_storeu_si512(samples + length, _mm512_maskz_compress_epi32(kept, sample));
    _mm512_storeu_si512(cells + length, _mm512_maskz_compress_epi32(kept, cell));
    length += __builtin_popcount(kept);
  }
  return length;
}

int listSamples(const DepthStretch& stretch, const CameraFactors& camera, const AerialGrid& grid,
                Listed* samples, std::int32_t* cells) {
  return shareCells(stretch, grid) ? listAll<true>(stretch, camera, grid, samples, cells)
                                   : listAll<false>(stretch, camera, grid, samples, cells);
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

int listCovered(const std::uint16_t* depth, int n, Listed* covered) {
  const __m512i empty = _mm512_set1_epi16(static_cast<short>(kEmptyCell));
  int length = 0;
  for (int i = 0; i < n; i += 32) {
    const int rest = n - i;
    const __mmask32 part = rest < 32 ? (1U << rest) - 1 : 0xFFFFFFFFU;
    const __m512i cells = _mm512_maskz_loadu_epi16(part, depth + i);
    const __mmask32 hasDepth = _mm512_mask_cmpneq_epi16_mask(part, cells, empty);
    length = appendCovered(_mm512_castsi512_si256(cells), i, static_cast<__mmask16>(hasDepth),
                           covered, length);
    length = appendCovered(_mm512_extracti64x4_epi64(cells, 1), i + 16,
                           static_cast<__mmask16>(hasDepth >> 16), covered, length);
  }
  return length;
}

} // namespace

const AerialKernels& avx512AerialKernels() {
  static const AerialKernels kernels{listSamples, findRange, listCovered};
  return kernels;
}

} // namespace velmorn
