#include "geometry/matrix_inverse.h"

#include <cmath>
#include <limits>
#include <random>

#include <gtest/gtest.h>

namespace velmorn {
namespace {

TEST(MatrixInverse, ByHand) {
  const double m[9] = {2, 0, 1, 0, 4, 0, 3, 5, 2}; // determinant 4
  const double expected[9] = {2, 1.25, -1, 0, 0.25, 0, -3, -2.5, 2};
  double inv[9] = {};
  ASSERT_EQ(matrixInverse(m, inv), 0);
  for (int k = 0; k < 9; ++k) EXPECT_EQ(inv[k], expected[k]) << k;
}

TEST(MatrixInverse, TimesTheMatrixGivesIdentity) {
  std::mt19937 random(1);
  std::uniform_real_distribution<double> value(-3, 3);
  for (int run = 0; run < 200; ++run) {
    double m[9], inv[9];
    for (double& element : m) element = value(random);
    if (matrixInverse(m, inv) != 0) continue;
    for (int row = 0; row < 3; ++row)
      for (int column = 0; column < 3; ++column) {
        double sum = 0;
        for (int k = 0; k < 3; ++k) sum += m[3 * row + k] * inv[3 * k + column];
        EXPECT_NEAR(sum, row == column ? 1 : 0, 1e-9);
      }
  }
}

TEST(MatrixInverse, DeterminantJustBelowTheLimitFailsAndLeavesTheOutput) {
  for (const double sign : {1.0, -1.0}) {
    const double m[9] = {sign * std::nextafter(1e-10, 0.0), 0, 0, 0, 1, 0, 0, 0, 1};
    double inv[9] = {7, 7, 7, 7, 7, 7, 7, 7, 7};
    EXPECT_EQ(matrixInverse(m, inv), -1);
    for (const double element : inv) EXPECT_EQ(element, 7);
  }
}

TEST(MatrixInverse, DeterminantAtTheLimitIsAccepted) {
  const double m[9] = {-1e-10, 0, 0, 0, 1, 0, 0, 0, 1};
  double inv[9] = {};
  EXPECT_EQ(matrixInverse(m, inv), 0);
  EXPECT_EQ(inv[0], 1 / -1e-10);
}

TEST(MatrixInverse, NotANumberIsPassedOn) {
  const double m[9] = {std::numeric_limits<double>::quiet_NaN(), 0, 0, 0, 1, 0, 0, 0, 1};
  double inv[9] = {};
  EXPECT_EQ(matrixInverse(m, inv), 0);
  EXPECT_TRUE(std::isnan(inv[0]));
}

} // namespace
} // namespace velmorn
