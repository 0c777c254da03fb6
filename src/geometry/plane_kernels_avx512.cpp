// The plane fit's passes for processors with AVX-512: eight points at once.
#include "geometry/plane_kernels.h"
#include "geometry/point_loads_avx512.h"

namespace velmorn {
namespace {

// Points between two looks at whether the rest can still win.
constexpr int kChunk = 4096;

struct VectorTest {
  __m512d a, b, c, d, cutoff;

  explicit VectorTest(const PlaneTest& test)
      : a(_mm512_set1_pd(test.a)),
        b(_mm512_set1_pd(test.b)),
        c(_mm512_set1_pd(test.c)),
        d(_mm512_set1_pd(test.d)),
        cutoff(_mm512_set1_pd(test.cutoff)) {}
};

// Bit i is set when point i is an inlier.
__mmask8 inliers8(const tagOzKPoint3Df32* points, const VectorTest& test) {
  const EightPoints p = load8(points);
  const __m512d ax = _mm512_mul_pd(test.a, _mm512_cvtps_pd(p.x));
  const __m512d by = _mm512_mul_pd(test.b, _mm512_cvtps_pd(p.y));
  const __m512d cz = _mm512_mul_pd(test.c, _mm512_cvtps_pd(p.z));
  const __m512d value = _mm512_add_pd(_mm512_add_pd(_mm512_add_pd(ax, by), cz), test.d);
  return _mm512_cmp_pd_mask(_mm512_abs_pd(value), test.cutoff, _CMP_LE_OQ); // false for NaN
}

int countInliers(const tagOzKPoint3Df32* points, int n, const PlaneTest& test, int toBeat) {
  const VectorTest vectorTest(test);
  const __m512i one = _mm512_set1_epi64(1);
  int count = 0;
  int i = 0;
  while (n - i >= 8) {
    if (n - i <= toBeat - count) return count;
    const int end = n - i > kChunk ? i + kChunk : i + ((n - i) & ~7);
    __m512i sums = _mm512_setzero_si512(); // eight 64-bit counts
    for (; i < end; i += 8)
      sums = _mm512_mask_add_epi64(sums, inliers8(points + i, vectorTest), sums, one);
    count += static_cast<int>(_mm512_reduce_add_epi64(sums));
  }
  return count + plainPlaneKernels().countInliers(points + i, n - i, test, toBeat - count);
}

void markInliers(const tagOzKPoint3Df32* points, int n, const PlaneTest& test,
                 unsigned char* mask) {
  const VectorTest vectorTest(test);
  int i = 0;
  for (; i <= n - 8; i += 8) {
    const __mmask8 bits = inliers8(points + i, vectorTest);
    const __m512i bytes = _mm512_maskz_set1_epi64(bits, 1);
    _mm_storel_epi64(reinterpret_cast<__m128i*>(mask + i), _mm512_cvtepi64_epi8(bytes));
  }
  plainPlaneKernels().markInliers(points + i, n - i, test, mask + i);
}

} // namespace

const PlaneKernels& avx512PlaneKernels() {
  static const PlaneKernels kernels{countInliers, markInliers};
  return kernels;
}

} // namespace velmorn
