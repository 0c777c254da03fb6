// The binning for processors with AVX2: eight points at once, their cells then one by one.
#include <immintrin.h>

#include "depth/background_batch.h"
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

struct Marked {
  __m256i mark;
  __m256 seen = _mm256_setzero_ps(); // lanes that had a point inside with the mark as its z

  void look(const EightPoints& p, __m256 inside) {
    const __m256i isMark = _mm256_cmpeq_epi32(_mm256_castps_si256(p.z), mark);
    seen = _mm256_or_ps(seen, _mm256_and_ps(inside, _mm256_castsi256_ps(isMark)));
  }
};

void append(__m256i cells, __m256 z, int lanes, Batch& batch) {
  constexpr int kAllLanes = (1 << kLanes) - 1;
  if (lanes == kAllLanes) {
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(batch.cells + batch.n), cells);
    _mm256_storeu_ps(batch.z + batch.n, z);
    batch.n += kLanes;
    return;
  }
  int cell[kLanes];
  float height[kLanes];
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(cell), cells);
  _mm256_storeu_ps(height, z);
  for (; lanes != 0; lanes &= lanes - 1) {
    const int lane = __builtin_ctz(static_cast<unsigned>(lanes));
    batch.cells[batch.n] = cell[lane];
    batch.z[batch.n++] = height[lane];
  }
}

void locateBatch(const tagOzKPoint3Df32* points, int n, const Locator& locator, Marked& marked,
                 Batch& batch) {
  batch.n = 0;
  for (int i = 0; i < n; i += kLanes) {
    fetchFarAhead(points + i, 2);
    const EightPoints p = load8(points + i);
    const __m256 inside = locator.inside(p);
    marked.look(p, inside);
    append(locator.cells(p), p.z, _mm256_movemask_ps(inside), batch);
  }
}

template <bool keepHighest>
bool binWith(const tagOzKPoint3Df32* points, int n, const BinGrid& grid, std::uint32_t emptyMark,
             float* cells) {
  const Locator locator(grid);
  Marked marked{_mm256_set1_epi32(static_cast<int>(emptyMark))};
  const int end = n / kLanes * kLanes;
  Batch batch;
  for (int i = 0; i < end; i += kBatch) {
    const int size = end - i < kBatch ? end - i : kBatch;
    locateBatch(points + i, size, locator, marked, batch);
    takeBatch<keepHighest>(batch, points + i + size, _mm256_castsi256_si128(marked.mark), cells);
  }
  const bool restIsUnmarked =
      plainBinPoints(points + end, n - end, grid, keepHighest, emptyMark, cells);
  return _mm256_movemask_ps(marked.seen) == 0 && restIsUnmarked;
}

} // namespace

bool avx2BinPoints(const tagOzKPoint3Df32* points, int n, const BinGrid& grid, bool keepHighest,
                   std::uint32_t emptyMark, float* cells) {
  return keepHighest ? binWith<true>(points, n, grid, emptyMark, cells)
                     : binWith<false>(points, n, grid, emptyMark, cells);
}

} // namespace velmorn
