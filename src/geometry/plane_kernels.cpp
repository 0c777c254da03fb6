// The plain form of the plane fit's passes, and the choice of a form.
#include "geometry/plane_kernels.h"

#include <cmath>

namespace velmorn {
namespace {

// Points between two looks at whether the rest can still win.
constexpr int kChunk = 1024;

bool isInlier(const tagOzKPoint3Df32& p, const PlaneTest& test) {
  const double value = test.a * static_cast<double>(p.x) + test.b * static_cast<double>(p.y) +
                       test.c * static_cast<double>(p.z) + test.d;
  return std::abs(value) <= test.cutoff;
}

int countInliers(const tagOzKPoint3Df32* points, int n, const PlaneTest& test, int toBeat) {
  int count = 0;
  for (int i = 0; i < n;) {
    if (n - i <= toBeat - count) return count;
    const int end = n - i > kChunk ? i + kChunk : n;
    for (; i < end; ++i) count += isInlier(points[i], test) ? 1 : 0;
  }
  return count;
}

void markInliers(const tagOzKPoint3Df32* points, int n, const PlaneTest& test,
                 unsigned char* mask) {
  for (int i = 0; i < n; ++i) mask[i] = isInlier(points[i], test) ? 1 : 0;
}

} // namespace

const PlaneKernels& plainPlaneKernels() {
  static const PlaneKernels kernels{countInliers, markInliers};
  return kernels;
}

const PlaneKernels& planeKernels(VectorLevel level) {
#if defined(VELMORN_X86_KERNELS)
  if (level == VectorLevel::kAvx512) return avx512PlaneKernels();
  if (level == VectorLevel::kAvx2) return avx2PlaneKernels();
#endif
  static_cast<void>(level);
  return plainPlaneKernels();
}

} // namespace velmorn
