// Loads of interleaved points into one vector per coordinate, for files compiled for AVX2. Internal
// linkage throughout: nothing compiled here may serve the rest of the library.
#ifndef VELMORN64_GEOMETRY_POINT_LOADS_AVX2_H
#define VELMORN64_GEOMETRY_POINT_LOADS_AVX2_H

#include <immintrin.h>

#include "velmorn64.h"

namespace {

struct FourPoints {
  __m128 x, y, z;
};

inline FourPoints load4(const tagOzKPoint3Df32* points) {
  const float* f = &points->x;
  const __m128 q0 = _mm_loadu_ps(f);     // x0 y0 z0 x1
  const __m128 q1 = _mm_loadu_ps(f + 4); // y1 z1 x2 y2
  const __m128 q2 = _mm_loadu_ps(f + 8); // z2 x3 y3 z3
  const __m128 xy23 = _mm_shuffle_ps(q1, q2, _MM_SHUFFLE(2, 1, 3, 2));
  const __m128 yz01 = _mm_shuffle_ps(q0, q1, _MM_SHUFFLE(1, 0, 2, 1));
  return {_mm_shuffle_ps(q0, xy23, _MM_SHUFFLE(2, 0, 3, 0)),
          _mm_shuffle_ps(yz01, xy23, _MM_SHUFFLE(3, 1, 2, 0)),
          _mm_shuffle_ps(yz01, q2, _MM_SHUFFLE(3, 0, 3, 1))};
}

} // namespace

#endif // VELMORN64_GEOMETRY_POINT_LOADS_AVX2_H
