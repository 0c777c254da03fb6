// Jacobi rotations on a symmetric 3x3 matrix.
#include "geometry/symmetric_eigen3.h"

#include <cmath>

namespace velmorn {
namespace {

constexpr double kOffDiagonalStop = 1e-6; // unit of the matrix
constexpr int kMaxRotations = 60;

// An element below the diagonal: row p, column q, p > q.
struct Pivot {
  int p;
  int q;
  double magnitude;
};

// The first of the largest. A NaN is never larger; in first place it is never replaced.
Pivot largestOffDiagonal(const double A[9]) {
  Pivot pivot{1, 0, std::abs(A[3])};
  if (std::abs(A[6]) > pivot.magnitude) pivot = {2, 0, std::abs(A[6])};
  if (std::abs(A[7]) > pivot.magnitude) pivot = {2, 1, std::abs(A[7])};
  return pivot;
}

// Turns the pair by the angle of sine s and cosine c.
void turn(double& atP, double& atQ, double s, double c) {
  const double oldP = atP, oldQ = atQ;
  atP = s * oldQ + c * oldP;
  atQ = c * oldQ - s * oldP;
}

// Clears A(p, q) by a rotation, which is also applied to V. g is the sine of twice its angle.
void clearPivot(double A[9], double V[9], int p, int q) {
  const double app = A[3 * p + p], aqq = A[3 * q + q], apq = A[3 * p + q];
  const double h = (aqq - app) * 0.5;
  double g = -apq / std::sqrt(h * h + apq * apq);
  if (h < 0) g = -g;
  const double s = g / std::sqrt(2.0 * (1.0 + std::sqrt(1.0 - g * g)));
  const double c = std::sqrt(1.0 - s * s);

  A[3 * p + p] = aqq * (s * s) + app * (c * c) + apq * g;
  A[3 * q + q] = aqq * (c * c) + app * (s * s) - apq * g;
  A[3 * p + q] = A[3 * q + p] = 0.0;
  const int k = 3 - p - q;
  turn(A[3 * p + k], A[3 * q + k], s, c);
  turn(A[3 * k + p], A[3 * k + q], s, c);
  for (int row = 0; row < 3; ++row) turn(V[3 * row + p], V[3 * row + q], s, c);
}

} // namespace

int jacobiEigenSymmetric3(double A[9], double eigenvalues[3], double V[9]) {
  for (int k = 0; k < 9; ++k) V[k] = k % 4 == 0 ? 1.0 : 0.0;
  for (int rotations = 0;; ++rotations) {
    const Pivot pivot = largestOffDiagonal(A);
    if (pivot.magnitude < kOffDiagonalStop) break;
    if (rotations == kMaxRotations) return -1;
    clearPivot(A, V, pivot.p, pivot.q);
  }
  for (int k = 0; k < 3; ++k) eigenvalues[k] = A[4 * k];
  return 0;
}

} // namespace velmorn
