// A host of the installed library: fits the transform between two small point sets.
#include <velmorn64.h>

#include <cmath>
#include <cstdio>

int main() {
  // b is a, turned by 90 degrees about z and moved by (10, 20, 30).
  tagOzKPoint3Df32 a[] = {{0, 0, 0}, {1, 0, 0}, {0, 2, 0}, {0, 0, 3}};
  tagOzKPoint3Df32 b[] = {{10, 20, 30}, {10, 21, 30}, {8, 20, 30}, {10, 20, 33}};
  tagOzKCamExtrinsic bFromA;
  float error = 0;
  if (ozkCalRTMatFrom3dPtTo3dPt(a, b, 4, &bFromA, &error) != kOzkSuccess) return 1;
  std::printf("velmorn64 %s: translation %.3f %.3f %.3f, mean residual %.6f\n", VELMORN64_VERSION,
              bFromA.data[3], bFromA.data[7], bFromA.data[11], static_cast<double>(error));
  return std::abs(bFromA.data[3] - 10) < 1e-4 && error < 1e-4F ? 0 : 1;
}
