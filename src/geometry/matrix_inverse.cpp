// Inverse of a 3x3 matrix, element by element.
#include "geometry/matrix_inverse.h"

#include <cmath>

namespace velmorn {
namespace {

constexpr double kLeastDeterminant = 1e-10;

} // namespace

int matrixInverse(const double m[9], double inv[9]) {
  const double det = m[0] * m[4] * m[8] + m[1] * m[5] * m[6] + m[2] * m[3] * m[7] -
                     m[0] * m[5] * m[7] - m[1] * m[3] * m[8] - m[2] * m[4] * m[6];
  if (std::abs(det) < kLeastDeterminant) return -1;

  inv[0] = (m[4] * m[8] - m[5] * m[7]) / det;
  inv[1] = -(m[1] * m[8] - m[2] * m[7]) / det;
  inv[2] = (m[1] * m[5] - m[2] * m[4]) / det;
  inv[3] = (m[5] * m[6] - m[3] * m[8]) / det;
  inv[4] = -(m[2] * m[6] - m[0] * m[8]) / det;
  inv[5] = (m[2] * m[3] - m[0] * m[5]) / det;
  inv[6] = (m[3] * m[7] - m[4] * m[6]) / det;
  inv[7] = -(m[0] * m[7] - m[1] * m[6]) / det;
  inv[8] = (m[0] * m[4] - m[1] * m[3]) / det;
  return 0;
}

} // namespace velmorn
