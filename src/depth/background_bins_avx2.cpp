// The binning for processors with AVX2: eight points at once, their cells then one by one.
#include <immintrin.h>

#include "depth/background_bins.h"

namespace velmorn {
namespace {

constexpr int kLanes = 8;

struct EightPoints {
  __m256 x, y, z;
};

// Points 0 to 3 in the lower halves, 4 to 7 in the upper ones.
EightPoints load8(const tagOzKPoint3Df32* points) {
  const float* const f = &points->x;
  const auto halves = [&](int at) {
    return _mm256_insertf128_ps(_mm256_castps128_ps256(_mm_loadu_ps(f + at)),
                                _mm_loadu_ps(f + at + 12), 1);
  };
  const __m256 q0 = halves(0); // x0 y0 z0 x1
  const __m256 q1 = halves(4); // y1 z1 x2 y2
  const __m256 q2 = halves(8); // z2 x3 y3 z3
  const __m256 xy23 = _mm256_shuffle_ps(q1, q2, _MM_SHUFFLE(2, 1, 3, 2));
  const __m256 yz01 = _mm256_shuffle_ps(q0, q1, _MM_SHUFFLE(1, 0, 2, 1));
  return {_mm256_shuffle_ps(q0, xy23, _MM_SHUFFLE(2, 0, 3, 0)),
          _mm256_shuffle_ps(yz01, xy23, _MM_SHUFFLE(3, 1, 2, 0)),
          _mm256_shuffle_ps(yz01, q2, _MM_SHUFFLE(3, 0, 3, 1))};
}

struct Locator {
  explicit Locator(const BinGrid& grid)
      : x1(_mm256_set1_ps(grid.region.x1)),
        y1(_mm256_set1_ps(grid.region.y1)),
        x2(_mm256_set1_ps(grid.region.x2)),
        y2(_mm256_set1_ps(grid.region.y2)),
        cellSize(_mm256_set1_ps(grid.cellSize)),
        width(_mm256_set1_epi32(grid.width)) {}

  // All bits of a lane when its point is inside. Ordered comparisons, so that NaN is outside.
  __m256 inside(const EightPoints& p) const {
    const __m256 x =
        _mm256_and_ps(_mm256_cmp_ps(p.x, x1, _CMP_GE_OQ), _mm256_cmp_ps(p.x, x2, _CMP_LE_OQ));
    const __m256 y =
        _mm256_and_ps(_mm256_cmp_ps(p.y, y1, _CMP_GE_OQ), _mm256_cmp_ps(p.y, y2, _CMP_LE_OQ));
    return _mm256_and_ps(x, y);
  }

  // Means nothing in lanes that are outside.
  __m256i cells(const EightPoints& p) const {
    const __m256 rows = _mm256_div_ps(_mm256_sub_ps(p.y, y1), cellSize);
    const __m256 columns = _mm256_div_ps(_mm256_sub_ps(p.x, x1), cellSize);
    return _mm256_add_epi32(_mm256_mullo_epi32(_mm256_cvttps_epi32(rows), width),
                            _mm256_cvttps_epi32(columns));
  }

  __m256 x1, y1, x2, y2, cellSize;
  __m256i width;
};

// The processor's maximum gives its second operand when the first is not greater, or either is NaN.
template <bool keepHighest>
void takePoint(float* cell, float newZ, __m128i emptyMark) {
  const __m128 z = _mm_set_ss(newZ), old = _mm_load_ss(cell);
  const __m128 better = keepHighest ? _mm_max_ss(z, old) : _mm_min_ss(z, old);
  const __m128 isEmpty = _mm_castsi128_ps(_mm_cmpeq_epi32(_mm_castps_si128(old), emptyMark));
  _mm_store_ss(cell, _mm_blendv_ps(better, z, isEmpty));
}

template <bool keepHighest>
bool binWith(const tagOzKPoint3Df32* points, int n, const BinGrid& grid, std::uint32_t emptyMark,
             float* cells) {
  const Locator locator(grid);
  const __m256i mark = _mm256_set1_epi32(static_cast<int>(emptyMark));
  __m256 marksSeen = _mm256_setzero_ps();
  int at[kLanes];
  int i = 0;
  for (; i <= n - kLanes; i += kLanes) {
    const EightPoints p = load8(points + i);
    const __m256 inside = locator.inside(p);
    const __m256i isMark = _mm256_cmpeq_epi32(_mm256_castps_si256(p.z), mark);
    marksSeen = _mm256_or_ps(marksSeen, _mm256_and_ps(inside, _mm256_castsi256_ps(isMark)));
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(at), locator.cells(p));
    const int lanes = _mm256_movemask_ps(inside);
    for (int k = 0; k < kLanes; ++k)
      if (lanes >> k & 1)
        takePoint<keepHighest>(cells + at[k], points[i + k].z, _mm256_castsi256_si128(mark));
  }
  const bool restIsUnmarked =
      plainBinPoints(points + i, n - i, grid, keepHighest, emptyMark, cells);
  return _mm256_movemask_ps(marksSeen) == 0 && restIsUnmarked;
}

} // namespace

bool avx2BinPoints(const tagOzKPoint3Df32* points, int n, const BinGrid& grid, bool keepHighest,
                   std::uint32_t emptyMark, float* cells) {
  return keepHighest ? binWith<true>(points, n, grid, emptyMark, cells)
                     : binWith<false>(points, n, grid, emptyMark, cells);
}

} // namespace velmorn
