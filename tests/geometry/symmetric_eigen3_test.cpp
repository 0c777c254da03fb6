#include "geometry/symmetric_eigen3.h"

#include <cmath>
#include <cstring>
#include <limits>
#include <random>

#include <gtest/gtest.h>

#include "geometry/plain_plane_fit.h"

namespace velmorn {
namespace {

struct Decomposition {
  int status = 0;
  double eigenvalues[3] = {7, 7, 7};
  double V[9] = {};
};

// Of the matrix with this lower triangle.
Decomposition decompose(double xx, double xy, double yy, double xz, double yz, double zz) {
  double A[9] = {xx, xy, xz, xy, yy, yz, xz, yz, zz};
  Decomposition result;
  result.status = jacobiEigenSymmetric3(A, result.eigenvalues, result.V);
  return result;
}

TEST(SymmetricEigen3, DiagonalKeepsItsOrderAndTheAxes) {
  const Decomposition result = decompose(1, 0, 9, 0, 0, -4);
  ASSERT_EQ(result.status, 0);
  EXPECT_EQ(result.eigenvalues[0], 1);
  EXPECT_EQ(result.eigenvalues[1], 9);
  EXPECT_EQ(result.eigenvalues[2], -4);
  for (int k = 0; k < 9; ++k) EXPECT_EQ(result.V[k], k % 4 == 0 ? 1 : 0);
}

TEST(SymmetricEigen3, OneRotationByHand) {
  const Decomposition result = decompose(2, 1, 2, 0, 0, 5);
  ASSERT_EQ(result.status, 0);
  EXPECT_NEAR(result.eigenvalues[0], 3, 1e-15);
  EXPECT_NEAR(result.eigenvalues[1], 1, 1e-15);
  EXPECT_EQ(result.eigenvalues[2], 5);
  const double half = std::sqrt(0.5);
  const double expected[9] = {half, -half, 0, half, half, 0, 0, 0, 1};
  for (int k = 0; k < 9; ++k) EXPECT_NEAR(result.V[k], expected[k], 1e-15) << k;
}

TEST(SymmetricEigen3, ColumnsAreEigenvectors) {
  std::mt19937 random(2);
  std::uniform_real_distribution<double> value(-100, 100);
  for (int run = 0; run < 500; ++run) {
    double a[6];
    for (double& element : a) element = value(random);
    const Decomposition result = decompose(a[0], a[1], a[2], a[3], a[4], a[5]);
    ASSERT_EQ(result.status, 0);
    const double A[9] = {a[0], a[1], a[3], a[1], a[2], a[4], a[3], a[4], a[5]};
    for (int column = 0; column < 3; ++column) {
      double length = 0;
      for (int row = 0; row < 3; ++row) {
        double product = 0;
        for (int k = 0; k < 3; ++k) product += A[3 * row + k] * result.V[3 * k + column];
        EXPECT_NEAR(product, result.eigenvalues[column] * result.V[3 * row + column], 1e-5);
        length += result.V[3 * row + column] * result.V[3 * row + column];
      }
      EXPECT_NEAR(length, 1, 1e-12);
    }
  }
}

TEST(SymmetricEigen3, BytesAreThoseOfThePlainForm) {
  std::mt19937 random(3);
  std::uniform_real_distribution<double> value(-1, 1), exponent(-8, 12);
  for (int run = 0; run < 5000; ++run) {
    const double scale = std::pow(10.0, exponent(random));
    double A[9], B[9];
    for (int row = 0; row < 3; ++row)
      for (int column = row; column < 3; ++column)
        A[3 * row + column] = A[3 * column + row] = scale * value(random);
    std::memcpy(B, A, sizeof A);
    double shipped[12] = {}, plain[12] = {};
    ASSERT_EQ(jacobiEigenSymmetric3(A, shipped, shipped + 3),
              plain::jacobiEigenSymmetric3(B, plain, plain + 3));
    EXPECT_EQ(std::memcmp(shipped, plain, sizeof plain), 0) << run;
  }
}

// The limit is absolute. A small cloud given in metres keeps the coordinate axes.
TEST(SymmetricEigen3, SmallMatrixKeepsTheAxes) {
  const double below = std::nextafter(1e-6, 0.0);
  Decomposition result = decompose(2e-6, below, 2e-6, 0, 0, 0);
  ASSERT_EQ(result.status, 0);
  EXPECT_EQ(result.V[0], 1);
  EXPECT_EQ(result.eigenvalues[0], 2e-6);
  result = decompose(2e-6, 1e-6, 2e-6, 0, 0, 0);
  ASSERT_EQ(result.status, 0);
  EXPECT_NEAR(result.eigenvalues[0], 3e-6, 1e-18);
}

TEST(SymmetricEigen3, NotANumberIsPassedOn) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const Decomposition result = decompose(1, nan, 2, 0.5, 0.25, 3);
  EXPECT_EQ(result.status, 0);
  EXPECT_TRUE(std::isnan(result.eigenvalues[0]));
}

TEST(SymmetricEigen3, ExtremeValuesEnd) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double inf = std::numeric_limits<double>::infinity();
  for (const double odd : {nan, inf, -inf, 1e308, -1e200, 5e-324})
    for (int place = 0; place < 6; ++place) {
      double a[6] = {1, 2, 3, 4, 5, 6};
      a[place] = odd;
      const int status = decompose(a[0], a[1], a[2], a[3], a[4], a[5]).status;
      EXPECT_TRUE(status == 0 || status == -1);
    }
}

} // namespace
} // namespace velmorn
