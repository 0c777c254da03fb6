// What the vector forms of the binning share: points on their way into cells.
#ifndef VELMORN64_DEPTH_BACKGROUND_BATCH_H
#define VELMORN64_DEPTH_BACKGROUND_BATCH_H

#include <immintrin.h>

#include <cstdint>

#include "velmorn64.h"

// Internal linkage: what a vector form's file makes of these may not serve the rest of the library.
namespace {

// Points whose cells are known before they are taken there. Few enough for the processor to locate
// the next ones while it still waits for the cells of these.
constexpr int kBatch = 128;
constexpr int kMostLanes = 16;
constexpr int kPointsPerLine = 5; // of the cache, cut off
constexpr std::uintptr_t kLineBytes = 64;
constexpr std::uintptr_t kFarAhead = 4096; // bytes

// Points inside the region, in point order.
struct Batch {
  int n;
  int cells[kBatch + kMostLanes];
  float z[kBatch + kMostLanes];
};

// May lie beyond the points: asking for memory never fails.
inline void fetch(std::uintptr_t address) {
  _mm_prefetch(reinterpret_cast<const char*>(address), _MM_HINT_T0);
}

// The lines that points are located from after some more batches.
inline void fetchFarAhead(const tagOzKPoint3Df32* points, std::uintptr_t lines) {
  const std::uintptr_t ahead = reinterpret_cast<std::uintptr_t>(points) + kFarAhead;
  for (std::uintptr_t line = 0; line < lines; ++line) fetch(ahead + kLineBytes * line);
}

// The processor's maximum gives its second operand when the first is not greater, or either is NaN.
template <bool keepHighest>
inline void takePoint(float* cell, const float* newZ, __m128i emptyMark) {
  const __m128 z = _mm_load_ss(newZ), old = _mm_load_ss(cell);
  const __m128 better = keepHighest ? _mm_max_ss(z, old) : _mm_min_ss(z, old);
  const __m128 isEmpty = _mm_castsi128_ps(_mm_cmpeq_epi32(_mm_castps_si128(old), emptyMark));
  _mm_store_ss(cell, _mm_blendv_ps(better, z, isEmpty));
}

// Fetches as many of the upcoming points along the way: taking waits for the cells, locating for
// the points.
template <bool keepHighest>
inline void takeBatch(const Batch& batch, const tagOzKPoint3Df32* upcoming, __m128i emptyMark,
                      float* cells) {
  std::uintptr_t ahead = reinterpret_cast<std::uintptr_t>(upcoming);
  int i = 0;
  for (; i <= batch.n - kPointsPerLine; i += kPointsPerLine) {
    fetch(ahead);
    ahead += kPointsPerLine * sizeof(tagOzKPoint3Df32);
    for (int k = i; k < i + kPointsPerLine; ++k)
      takePoint<keepHighest>(cells + batch.cells[k], batch.z + k, emptyMark);
  }
  for (; i < batch.n; ++i) takePoint<keepHighest>(cells + batch.cells[i], batch.z + i, emptyMark);
}

} // namespace

#endif // VELMORN64_DEPTH_BACKGROUND_BATCH_H
