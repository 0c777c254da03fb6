// The plain form of the rigid fit's passes, and the choice of a form.
#include "geometry/rigid_kernels.h"

#include <cmath>

namespace velmorn {
namespace {

void addPoints(const tagOzKPoint3Df32* a, const tagOzKPoint3Df32* b, int n, double sumA[3],
               double sumB[3]) {
  for (int i = 0; i < n; ++i) {
    sumA[0] += static_cast<double>(a[i].x);
    sumA[1] += static_cast<double>(a[i].y);
    sumA[2] += static_cast<double>(a[i].z);
    sumB[0] += static_cast<double>(b[i].x);
    sumB[1] += static_cast<double>(b[i].y);
    sumB[2] += static_cast<double>(b[i].z);
  }
}

void addProduct(const tagOzKPoint3Df32& a, const tagOzKPoint3Df32& b, const float ca[3],
                const float cb[3], double sums[9]) {
  const float da[3] = {a.x - ca[0], a.y - ca[1], a.z - ca[2]};
  const float db[3] = {b.x - cb[0], b.y - cb[1], b.z - cb[2]};
  for (int row = 0; row < 3; ++row)
    for (int column = 0; column < 3; ++column)
      sums[3 * row + column] += static_cast<double>(da[row]) * static_cast<double>(db[column]);
}

void addProducts4(const tagOzKPoint3Df32* a, const tagOzKPoint3Df32* b, int n, const float ca[3],
                  const float cb[3], double sums[4][9]) {
  const int fullGroups = n & ~3;
  for (int i = 0; i < n; ++i) addProduct(a[i], b[i], ca, cb, sums[i < fullGroups ? i & 3 : 0]);
}

void addProducts2(const tagOzKPoint3Df32* a, const tagOzKPoint3Df32* b, int n, const float ca[3],
                  const float cb[3], double sums[2][9]) {
  for (int i = 0; i < n; ++i) addProduct(a[i], b[i], ca, cb, sums[i & 1]);
}

float addResiduals(const tagOzKPoint3Df32* a, const tagOzKPoint3Df32* b, int n, const double R[9],
                   const double t[3], float sum) {
  for (int i = 0; i < n; ++i) {
    const double x = static_cast<double>(a[i].x);
    const double y = static_cast<double>(a[i].y);
    const double z = static_cast<double>(a[i].z);
    const double dx = static_cast<double>(b[i].x) - (R[0] * x + R[1] * y + R[2] * z + t[0]);
    const double dy = static_cast<double>(b[i].y) - (R[3] * x + R[4] * y + R[5] * z + t[1]);
    const double dz = static_cast<double>(b[i].z) - (R[6] * x + R[7] * y + R[8] * z + t[2]);
    // The signs of the differences drop out in the squares.
    sum += static_cast<float>(std::sqrt(dx * dx + dy * dy + dz * dz));
  }
  return sum;
}

} // namespace

const RigidKernels& plainRigidKernels() {
  static const RigidKernels kernels{addPoints, addProducts4, addProducts2, addResiduals};
  return kernels;
}

const RigidKernels& rigidKernels(VectorLevel level) {
#if defined(VELMORN_X86_KERNELS)
  if (level == VectorLevel::kAvx512) return avx512RigidKernels();
  if (level == VectorLevel::kAvx2) return avx2RigidKernels();
#endif
  static_cast<void>(level);
  return plainRigidKernels();
}

} // namespace velmorn
