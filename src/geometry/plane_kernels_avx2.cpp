// The plane fit's passes for processors with AVX2: four points at once.
#include "geometry/plane_kernels.h"
#include "geometry/point_loads_avx2.h"

namespace velmorn {
namespace {

// Points between two looks at whether the rest can still win.
constexpr int kChunk = 4096;

struct VectorTest {
  __m256d a, b, c, d, cutoff;

  explicit VectorTest(const PlaneTest& test)
      : a(_mm256_set1_pd(test.a)),
        b(_mm256_set1_pd(test.b)),
        c(_mm256_set1_pd(test.c)),
        d(_mm256_set1_pd(test.d)),
        cutoff(_mm256_set1_pd(test.cutoff)) {}
};

// All bits of a lane are set for an inlier.
__m256d inliers4(const tagOzKPoint3Df32* points, const VectorTest& test) {
  const FourPoints p = load4(points);
  const __m256d ax = _mm256_mul_pd(test.a, _mm256_cvtps_pd(p.x));
  const __m256d by = _mm256_mul_pd(test.b, _mm256_cvtps_pd(p.y));
  const __m256d cz = _mm256_mul_pd(test.c, _mm256_cvtps_pd(p.z));
  const __m256d value = _mm256_add_pd(_mm256_add_pd(_mm256_add_pd(ax, by), cz), test.d);
  const __m256d magnitude = _mm256_andnot_pd(_mm256_set1_pd(-0.0), value);
  return _mm256_cmp_pd(magnitude, test.cutoff, _CMP_LE_OQ); // false for NaN
}

int countInliers(const tagOzKPoint3Df32* points, int n, const PlaneTest& test, int toBeat) {
  const VectorTest vectorTest(test);
  int count = 0;
  int i = 0;
  while (n - i >= 4) {
    if (n - i <= toBeat - count) return count;
    const int end = n - i > kChunk ? i + kChunk : i + ((n - i) & ~3);
    __m256i sums = _mm256_setzero_si256(); // four 64-bit counts; an inlier's lane is -1
    for (; i < end; i += 4)
      sums = _mm256_sub_epi64(sums, _mm256_castpd_si256(inliers4(points + i, vectorTest)));
    long long lanes[4];
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(lanes), sums);
    count += static_cast<int>(lanes[0] + lanes[1] + lanes[2] + lanes[3]);
  }
  return count + plainPlaneKernels().countInliers(points + i, n - i, test, toBeat - count);
}

void markInliers(const tagOzKPoint3Df32* points, int n, const PlaneTest& test,
                 unsigned char* mask) {
  const VectorTest vectorTest(test);
  int i = 0;
  for (; i <= n - 4; i += 4) {
    const int bits = _mm256_movemask_pd(inliers4(points + i, vectorTest));
    for (int k = 0; k < 4; ++k) mask[i + k] = static_cast<unsigned char>((bits >> k) & 1);
  }
  plainPlaneKernels().markInliers(points + i, n - i, test, mask + i);
}

} // namespace

const PlaneKernels& avx2PlaneKernels() {
  static const PlaneKernels kernels{countInliers, markInliers};
  return kernels;
}

} // namespace velmorn
