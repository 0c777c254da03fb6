// The binning for processors with AVX-512: sixteen points at once, their cells then one by one.
#include <immintrin.h>

#include "depth/background_bins.h"

namespace velmorn {
namespace {

constexpr int kLanes = 16;
constexpr int kBatch = 16 * kLanes; // points

struct SixteenPoints {
  __m512 x, y, z;
};

// Lane i takes float first + 3 i of the 48 in a, b and c.
template <int first>
__m512 everyThird(__m512 a, __m512 b, __m512 c) {
  const __m512i index = _mm512_add_epi32(
      _mm512_set1_epi32(first),
      _mm512_setr_epi32(0, 3, 6, 9, 12, 15, 18, 21, 24, 27, 30, 33, 36, 39, 42, 45));
  // Indices count modulo 32; lanes beyond a and b are taken from c.
  constexpr __mmask16 kFromC = static_cast<__mmask16>(0xFFFF << ((34 - first) / 3));
  const __m512 fromAB = _mm512_permutex2var_ps(a, index, b);
  return _mm512_mask_permutexvar_ps(fromAB, kFromC, index, c);
}

SixteenPoints load16(const tagOzKPoint3Df32* points) {
  const float* const f = &points->x;
  const __m512 a = _mm512_loadu_ps(f), b = _mm512_loadu_ps(f + 16), c = _mm512_loadu_ps(f + 32);
  return {everyThird<0>(a, b, c), everyThird<1>(a, b, c), everyThird<2>(a, b, c)};
}

// Points inside the region, in point order.
struct Batch {
  int cells[kBatch + kLanes];
  float z[kBatch + kLanes];
  int n;
};

struct Locator {
  explicit Locator(const BinGrid& grid)
      : x1(_mm512_set1_ps(grid.region.x1)),
        y1(_mm512_set1_ps(grid.region.y1)),
        x2(_mm512_set1_ps(grid.region.x2)),
        y2(_mm512_set1_ps(grid.region.y2)),
        cellSize(_mm512_set1_ps(grid.cellSize)),
        width(_mm512_set1_epi32(grid.width)) {}

  // Ordered comparisons, so that NaN is outside.
  __mmask16 inside(const SixteenPoints& p) const {
    __mmask16 m = _mm512_cmp_ps_mask(p.x, x1, _CMP_GE_OQ);
    m = _mm512_mask_cmp_ps_mask(m, p.x, x2, _CMP_LE_OQ);
    m = _mm512_mask_cmp_ps_mask(m, p.y, y1, _CMP_GE_OQ);
    return _mm512_mask_cmp_ps_mask(m, p.y, y2, _CMP_LE_OQ);
  }

  __m512i cells(const SixteenPoints& p, __mmask16 m) const {
    const __m512 rows = _mm512_maskz_div_ps(m, _mm512_sub_ps(p.y, y1), cellSize);
    const __m512 columns = _mm512_maskz_div_ps(m, _mm512_sub_ps(p.x, x1), cellSize);
    return _mm512_add_epi32(_mm512_mullo_epi32(_mm512_cvttps_epi32(rows), width),
                            _mm512_cvttps_epi32(columns));
  }

  __m512 x1, y1, x2, y2, cellSize;
  __m512i width;
};

// The processor's maximum gives its second operand when the first is not greater, or either is NaN.
template <bool keepHighest>
__m128 better(__m128 cell, __m128 z) {
  return keepHighest ? _mm_max_ss(z, cell) : _mm_min_ss(z, cell);
}

template <bool keepHighest>
void takeBatch(const Batch& batch, __m128i emptyMark, float* cells) {
  for (int i = 0; i < batch.n; ++i) {
    float* const cell = cells + batch.cells[i];
    const __m128 z = _mm_load_ss(batch.z + i), old = _mm_load_ss(cell);
    const __m128 isEmpty = _mm_castsi128_ps(_mm_cmpeq_epi32(_mm_castps_si128(old), emptyMark));
    _mm_store_ss(cell, _mm_blendv_ps(better<keepHighest>(old, z), z, isEmpty));
  }
}

template <bool keepHighest>
bool binWith(const tagOzKPoint3Df32* points, int n, const BinGrid& grid, std::uint32_t emptyMark,
             float* cells) {
  const Locator locator(grid);
  const __m512i mark = _mm512_set1_epi32(static_cast<int>(emptyMark));
  __mmask16 marksSeen = 0;
  Batch batch;
  int i = 0;
  while (i <= n - kLanes) {
    batch.n = 0;
    const int end = n - i > kBatch ? i + kBatch : n;
    for (; i <= end - kLanes; i += kLanes) {
      const SixteenPoints p = load16(points + i);
      const __mmask16 m = locator.inside(p);
      marksSeen |= _mm512_mask_cmpeq_epi32_mask(m, _mm512_castps_si512(p.z), mark);
      _mm512_storeu_si512(batch.cells + batch.n,
                          _mm512_maskz_compress_epi32(m, locator.cells(p, m)));
      _mm512_storeu_ps(batch.z + batch.n, _mm512_maskz_compress_ps(m, p.z));
      batch.n += _mm_popcnt_u32(m);
    }
    takeBatch<keepHighest>(batch, _mm512_castsi512_si128(mark), cells);
  }
  const bool restIsUnmarked =
      plainBinPoints(points + i, n - i, grid, keepHighest, emptyMark, cells);
  return marksSeen == 0 && restIsUnmarked;
}

} // namespace

bool avx512BinPoints(const tagOzKPoint3Df32* points, int n, const BinGrid& grid, bool keepHighest,
                     std::uint32_t emptyMark, float* cells) {
  return keepHighest ? binWith<true>(points, n, grid, emptyMark, cells)
                     : binWith<false>(points, n, grid, emptyMark, cells);
}

} // namespace velmorn
