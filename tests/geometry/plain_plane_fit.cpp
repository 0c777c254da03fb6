#include "geometry/plain_plane_fit.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace velmorn::plain {
namespace {

double widen(float value) { return static_cast<double>(value); }

double clampToUnit(double value) {
  if (value < 0.0) return 0.0;
  if (value > 1.0) return 1.0;
  return value;
}

void setPlane(const float axes[9], const float centroid[3], double plane[4]) {
  plane[0] = widen(axes[6]);
  plane[1] = widen(axes[7]);
  plane[2] = widen(axes[8]);
  plane[3] = -(plane[0] * widen(centroid[0]) + plane[1] * widen(centroid[1]) +
               plane[2] * widen(centroid[2]));
}

double offPlane(const double plane[4], const tagOzKPoint3Df32& point) {
  const double a = plane[0], b = plane[1], c = plane[2], d = plane[3];
  return std::fabs(a * widen(point.x) + b * widen(point.y) + c * widen(point.z) + d);
}

int refit(const tagOzKPoint3Df32* points, int n, unsigned char* inlierMask, double threshold,
          double plane[4], unsigned char* buffer) {
  int m = 0;
  for (int i = 0; i < n; ++i)
    if (inlierMask[i] == 1) {
      std::memcpy(buffer + 12 * static_cast<std::size_t>(m), &points[i], 12);
      m += 1;
    }
  if (m < 3) return -1;
  float centroid[3], axes[9];
  if (fitPlaneLeastSquares(reinterpret_cast<const float*>(buffer), centroid, axes, nullptr, m) != 0)
    return -1;
  setPlane(axes, centroid, plane);
  const double norm = std::sqrt(plane[0] * plane[0] + plane[1] * plane[1] + plane[2] * plane[2]);
  if (norm < 1e-6) return -1;
  for (int i = 0; i < n; ++i) {
    if (threshold > offPlane(plane, points[i]) / norm)
      inlierMask[i] = 1;
    else
      inlierMask[i] = 0;
  }
  return 0;
}

} // namespace

int fitPlaneByRansacV2(const tagOzKPoint3Df32* points, int n, unsigned char* inlierMask,
                       double confidence, double threshold, double plane[4], void* workBuffer) {
  if (n < 3) return -1;
  std::srand(1);
  const auto address = (reinterpret_cast<std::uintptr_t>(workBuffer) + 15) / 16 * 16;
  auto* const buffer = reinterpret_cast<unsigned char*>(address);

  int best = 0, maxIters = 30000, iter = 0;
  do {
    if (iter >= 30000) break;
    float sample[9];
    int indices[3];
    if (sampleThreePlanePoints(points, n, sample, indices) != 0) {
      if (iter == 0) return -1;
      break;
    }
    float centroid[3], axes[9];
    if (fitPlaneLeastSquares(sample, centroid, axes, nullptr, 3) == 0) {
      double h[4];
      setPlane(axes, centroid, h);
      const double invNorm = 1.0 / (std::sqrt(h[0] * h[0] + h[1] * h[1] + h[2] * h[2]) + 1e-6);
      int count = 0;
      for (int i = 0; i < n; ++i) {
        const bool inlier = threshold > offPlane(h, points[i]) * invNorm;
        buffer[i] = inlier ? 1 : 0;
        if (inlier) count += 1;
      }
      const int toBeat = best > 2 ? best : 2;
      if (count > toBeat) {
        std::memcpy(plane, h, sizeof h);
        std::memcpy(inlierMask, buffer, static_cast<std::size_t>(n));
        best = count;
        const double outliers = static_cast<double>(n - count) / static_cast<double>(n);
        maxIters = ransacUpdateIterCount(confidence, outliers, n, maxIters);
      }
    }
    iter += 1; // a sample without a plane counts as well
  } while (iter < maxIters);
  return refit(points, n, inlierMask, threshold, plane, buffer);
}

int ransacUpdateIterCount(double confidence, double outlierRatio, int /*n*/, int maxIters) {
  const double p = clampToUnit(confidence), e = clampToUnit(outlierRatio);
  double num = 1.0 - p;
  if (num < 1e-6) num = 1e-6;
  double denom = 1.0 - (1.0 - e) * (1.0 - e) * (1.0 - e);
  if (denom < 1e-6) return 0;
  num = std::log(num);
  denom = std::log(denom);
  if (denom >= 0.0) return maxIters;
  if (-num >= static_cast<double>(maxIters) * (-denom)) return maxIters;
  if (std::isnan(num) || std::isnan(denom)) return maxIters;
  return static_cast<int>(std::trunc(num / denom + 0.5));
}

int sampleThreePlanePoints(const tagOzKPoint3Df32* points, int n, float sample[9], int indices[3]) {
  int attempts = 0;
  while (attempts < 30000) {
    int accepted = 0;
    while (accepted < 3) {
      const int idx = std::rand() % n;
      bool fresh = true;
      for (int j = 0; j < accepted; ++j) fresh = fresh && indices[j] != idx;
      if (!fresh) continue;
      indices[accepted] = idx;
      std::memcpy(sample + 3 * accepted, &points[idx], 12);
      accepted += 1;
    }
    float r[3];
    for (int k = 0; k < 3; ++k) {
      const float along = sample[3 + k] - sample[k], extent = sample[6 + k] - sample[k];
      r[k] = 0.0F;
      if (widen(extent) > 0.0001) r[k] = along / extent;
    }
    if (!(r[0] == r[1] && r[1] == r[2])) return 0;
    attempts += 1;
  }
  return -1;
}

int fitPlaneLeastSquares(const float* points, float centroid[3], float axes[9], double* eigenvalues,
                         int n) {
  float sx = 0.0F, sy = 0.0F, sz = 0.0F;
  for (int i = 0; i < n; ++i) {
    sx += points[3 * static_cast<std::size_t>(i)];
    sy += points[3 * static_cast<std::size_t>(i) + 1];
    sz += points[3 * static_cast<std::size_t>(i) + 2];
  }
  centroid[0] = sx / static_cast<float>(n);
  centroid[1] = sy / static_cast<float>(n);
  centroid[2] = sz / static_cast<float>(n);

  double C[3][3] = {};
  for (int i = 0; i < n; ++i) {
    float difference[3];
    for (int k = 0; k < 3; ++k)
      difference[k] =
          points[3 * static_cast<std::size_t>(i) + static_cast<std::size_t>(k)] - centroid[k];
    for (int row = 0; row < 3; ++row)
      for (int column = row; column < 3; ++column)
        C[row][column] += widen(difference[row]) * widen(difference[column]);
  }
  double A[9], lambda[3], V[9];
  for (int row = 0; row < 3; ++row)
    for (int column = row; column < 3; ++column)
      A[3 * row + column] = A[3 * column + row] = C[row][column] / static_cast<double>(n);
  if (jacobiEigenSymmetric3(A, lambda, V) != 0) return -1;

  for (int k = 0; k < 3; ++k) {
    const double length = std::sqrt(V[k] * V[k] + V[3 + k] * V[3 + k] + V[6 + k] * V[6 + k]);
    for (int row = 0; row < 3; ++row)
      axes[3 * k + row] = static_cast<float>(V[3 * row + k] / length);
  }
  for (int i = 0; i < 3; ++i)
    for (int j = i + 1; j < 3; ++j) {
      if (!(std::fabs(lambda[j]) > std::fabs(lambda[i]))) continue;
      const double value = lambda[i];
      lambda[i] = lambda[j];
      lambda[j] = value;
      float axis[3];
      std::memcpy(axis, axes + 3 * i, sizeof axis);
      std::memcpy(axes + 3 * i, axes + 3 * j, sizeof axis);
      std::memcpy(axes + 3 * j, axis, sizeof axis);
    }
  if (eigenvalues != nullptr) std::memcpy(eigenvalues, lambda, sizeof lambda);
  return 0;
}

int jacobiEigenSymmetric3(double A[9], double eigenvalues[3], double V[9]) {
  const double identity[9] = {1, 0, 0, 0, 1, 0, 0, 0, 1};
  std::memcpy(V, identity, sizeof identity);
  for (int sweep = 1;; ++sweep) {
    int p = 1, q = 0;
    if (std::fabs(A[6]) > std::fabs(A[3 * p + q])) p = 2, q = 0;
    if (std::fabs(A[7]) > std::fabs(A[3 * p + q])) p = 2, q = 1;
    if (std::fabs(A[3 * p + q]) < 1e-6) {
      eigenvalues[0] = A[0];
      eigenvalues[1] = A[4];
      eigenvalues[2] = A[8];
      return 0;
    }
    if (sweep > 60) return -1;

    const double aqq = A[3 * q + q], app = A[3 * p + p], apq = A[3 * p + q];
    const double h = (aqq - app) * 0.5;
    double g = -apq / std::sqrt(h * h + apq * apq);
    if (h < 0.0) g = -g;
    const double s = g / std::sqrt(2.0 * (1.0 + std::sqrt(1.0 - g * g)));
    const double c = std::sqrt(1.0 - s * s);
    const double s2 = s * s, c2 = c * c;
    A[3 * p + p] = aqq * s2 + app * c2 + apq * g;
    A[3 * q + q] = aqq * c2 + app * s2 - apq * g;
    A[3 * p + q] = 0.0;
    A[3 * q + p] = 0.0;
    for (int k = 0; k < 3; ++k) {
      const double vp = V[3 * k + p], vq = V[3 * k + q];
      V[3 * k + p] = s * vq + c * vp;
      V[3 * k + q] = c * vq - s * vp;
      if (k == p || k == q) continue;
      const double rowP = A[3 * p + k], rowQ = A[3 * q + k];
      A[3 * p + k] = s * rowQ + c * rowP;
      A[3 * q + k] = c * rowQ - s * rowP;
      const double columnP = A[3 * k + p], columnQ = A[3 * k + q];
      A[3 * k + p] = s * columnQ + c * columnP;
      A[3 * k + q] = c * columnQ - s * columnP;
    }
  }
}

float meanPointToPlaneDistance(const float axes[9], const float origin[3],
                               const tagOzKPoint3Df32* points, int n) {
  const float nx = axes[6], ny = axes[7], nz = axes[8];
  const float d0 = -(nx * origin[0] + ny * origin[1] + nz * origin[2]);
  const float length = std::sqrt(nx * nx + ny * ny + nz * nz);
  float sum = 0.0F;
  for (int i = 0; i < n; ++i) {
    const float off = nx * points[i].x + ny * points[i].y + nz * points[i].z + d0;
    sum += static_cast<float>(std::fabs(widen(off))) / length;
  }
  return sum / static_cast<float>(n);
}

} // namespace velmorn::plain
