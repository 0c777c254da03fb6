// Loads of interleaved points into one vector per coordinate, for files compiled for AVX-512.
// Internal linkage throughout: nothing compiled here may serve the rest of the library.
#ifndef VELMORN64_GEOMETRY_POINT_LOADS_AVX512_H
#define VELMORN64_GEOMETRY_POINT_LOADS_AVX512_H

#include <immintrin.h>

#include "velmorn64.h"

namespace {

struct EightPoints {
  __m256 x, y, z;
};

// Lane i takes float first + 3 i of the 24.
template <int first>
inline __m256 everyThird(__m512 low, __m512 high) {
  const __m512i index =
      _mm512_setr_epi32(first, first + 3, first + 6, first + 9, first + 12, first + 15, first + 18,
                        first + 21, 0, 0, 0, 0, 0, 0, 0, 0);
  return _mm512_castps512_ps256(_mm512_permutex2var_ps(low, index, high));
}

inline EightPoints load8(const tagOzKPoint3Df32* points) {
  const float* f = &points->x;
  const __m512 low = _mm512_loadu_ps(f);
  const __m512 high = _mm512_castps256_ps512(_mm256_loadu_ps(f + 16));
  return {everyThird<0>(low, high), everyThird<1>(low, high), everyThird<2>(low, high)};
}

} // namespace

#endif // VELMORN64_GEOMETRY_POINT_LOADS_AVX512_H
