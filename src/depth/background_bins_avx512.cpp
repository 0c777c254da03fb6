// The binning for processors with AVX-512: sixteen points at once, their cells then one by one.
#include <immintrin.h>

#include "depth/background_batch.h"
#include "depth/background_bins.h"

namespace velmorn {
namespace {

constexpr int kLanes = 16;

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

// Points before the first one whose loads keep to the lines of the cache; 0 when there is none.
int pointsBeforeLine(const tagOzKPoint3Df32* points) {
  const std::uintptr_t address = reinterpret_cast<std::uintptr_t>(points);
  // A line has 16 words, a point 3: w words past a line, 5 w points are 16 w words with them.
  return address % sizeof(float) == 0 ? static_cast<int>(5 * (address / sizeof(float)) % 16) : 0;
}

struct Marked {
  __m512i mark;
  __mmask16 seen = 0; // lanes that had a point inside with the mark as its z

  void look(const SixteenPoints& p, __mmask16 inside) {
    seen |= _mm512_mask_cmpeq_epi32_mask(inside, _mm512_castps_si512(p.z), mark);
  }
};

void locateBatch(const tagOzKPoint3Df32* points, int n, const Locator& locator, Marked& marked,
                 Batch& batch) {
  batch.n = 0;
  for (int i = 0; i < n; i += kLanes) {
    fetchFarAhead(points + i, 3);
    const SixteenPoints p = load16(points + i);
    const __mmask16 inside = locator.inside(p);
    marked.look(p, inside);
    _mm512_storeu_si512(batch.cells + batch.n,
                        _mm512_maskz_compress_epi32(inside, locator.cells(p, inside)));
    _mm512_storeu_ps(batch.z + batch.n, _mm512_maskz_compress_ps(inside, p.z));
    batch.n += _mm_popcnt_u32(inside);
  }
}

template <bool keepHighest>
bool binWith(const tagOzKPoint3Df32* points, int n, const BinGrid& grid, std::uint32_t emptyMark,
             float* cells) {
  const Locator locator(grid);
  Marked marked{_mm512_set1_epi32(static_cast<int>(emptyMark))};
  const auto binPlainly = [&](int first, int end) {
    return plainBinPoints(points + first, end - first, grid, keepHighest, emptyMark, cells);
  };
  const int beforeLine = pointsBeforeLine(points), start = beforeLine < n ? beforeLine : n;
  const int end = start + (n - start) / kLanes * kLanes;
  const bool startIsUnmarked = binPlainly(0, start);
  Batch batch;
  for (int i = start; i < end; i += kBatch) {
    const int size = end - i < kBatch ? end - i : kBatch;
    locateBatch(points + i, size, locator, marked, batch);
    takeBatch<keepHighest>(batch, points + i + size, _mm512_castsi512_si128(marked.mark), cells);
  }
  const bool restIsUnmarked = binPlainly(end, n);
  return marked.seen == 0 && startIsUnmarked && restIsUnmarked;
}

} // namespace

bool avx512BinPoints(const tagOzKPoint3Df32* points, int n, const BinGrid& grid, bool keepHighest,
                     std::uint32_t emptyMark, float* cells) {
  return keepHighest ? binWith<true>(points, n, grid, emptyMark, cells)
                     : binWith<false>(points, n, grid, emptyMark, cells);
}

} // namespace velmorn
