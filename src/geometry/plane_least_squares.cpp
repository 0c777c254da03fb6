// Least-squares plane: centroid, covariance, eigenvectors.
#include "geometry/plane_least_squares.h"

#include <cmath>
#include <utility>

#include "geometry/symmetric_eigen3.h"

namespace velmorn {
namespace {

void centroidOf(const float* points, int n, float centroid[3]) {
  float sum[3] = {};
  for (int i = 0; i < n; ++i, points += 3)
    for (int k = 0; k < 3; ++k) sum[k] += points[k];
  for (int k = 0; k < 3; ++k) centroid[k] = sum[k] / static_cast<float>(n);
}

void covarianceOf(const float* points, int n, const float centroid[3], double covariance[9]) {
  double xx = 0, xy = 0, xz = 0, yy = 0, yz = 0, zz = 0;
  for (int i = 0; i < n; ++i, points += 3) {
    const double x = static_cast<double>(points[0] - centroid[0]);
    const double y = static_cast<double>(points[1] - centroid[1]);
    const double z = static_cast<double>(points[2] - centroid[2]);
    xx += x * x;
    xy += x * y;
    xz += x * z;
    yy += y * y;
    yz += y * z;
    zz += z * z;
  }
  covariance[0] = xx / n;
  covariance[1] = covariance[3] = xy / n;
  covariance[2] = covariance[6] = xz / n;
  covariance[4] = yy / n;
  covariance[5] = covariance[7] = yz / n;
  covariance[8] = zz / n;
}

// Column `column` of V, brought to length 1.
void unitColumn(const double V[9], int column, float axis[3]) {
  const double x = V[column], y = V[3 + column], z = V[6 + column];
  const double length = std::sqrt(x * x + y * y + z * z);
  axis[0] = static_cast<float>(x / length);
  axis[1] = static_cast<float>(y / length);
  axis[2] = static_cast<float>(z / length);
}

// By decreasing magnitude; equal ones are not exchanged with each other.
void sortByMagnitude(double eigenvalues[3], float axes[9]) {
  for (int i = 0; i < 3; ++i)
    for (int j = i + 1; j < 3; ++j)
      if (std::abs(eigenvalues[j]) > std::abs(eigenvalues[i])) {
        std::swap(eigenvalues[i], eigenvalues[j]);
        for (int k = 0; k < 3; ++k) std::swap(axes[3 * i + k], axes[3 * j + k]);
      }
}

} // namespace

int fitPlaneLeastSquares(const float* points, float centroid[3], float axes[9], double* eigenvalues,
                         int n) {
  if (n < 1) return -1;
  centroidOf(points, n, centroid);
  double covariance[9], values[3], V[9];
  covarianceOf(points, n, centroid, covariance);
  if (jacobiEigenSymmetric3(covariance, values, V) != 0) return -1;

  for (int k = 0; k < 3; ++k) unitColumn(V, k, axes + 3 * k);
  sortByMagnitude(values, axes);
  if (eigenvalues != nullptr)
    for (int k = 0; k < 3; ++k) eigenvalues[k] = values[k];
  return 0;
}

float meanPointToPlaneDistance(const float axes[9], const float origin[3],
                               const tagOzKPoint3Df32* points, int n) {
  const float nx = axes[6], ny = axes[7], nz = axes[8];
  const float d = -(nx * origin[0] + ny * origin[1] + nz * origin[2]);
  const float length = std::sqrt(nx * nx + ny * ny + nz * nz);
  float sum = 0;
  for (int i = 0; i < n; ++i)
    sum += std::abs(nx * points[i].x + ny * points[i].y + nz * points[i].z + d) / length;
  return sum / static_cast<float>(n);
}

} // namespace velmorn
