#include "geometry/plane_least_squares.h"

#include <cmath>
#include <cstring>
#include <limits>

#include <gtest/gtest.h>

#include "geometry/plain_plane_fit.h"
#include "geometry/point_clouds.h"

namespace velmorn {
namespace {

const float* floatsOf(const std::vector<tagOzKPoint3Df32>& points) {
  return reinterpret_cast<const float*>(points.data());
}

TEST(PlaneLeastSquares, SquareByHand) {
  const float square[12] = {1, 2, 5, 1, -2, 5, -1, 2, 5, -1, -2, 5};
  float centroid[3], axes[9];
  double eigenvalues[3];
  ASSERT_EQ(fitPlaneLeastSquares(square, centroid, axes, eigenvalues, 4), 0);
  const float expectedCentroid[3] = {0, 0, 5}, expectedAxes[9] = {0, 1, 0, 1, 0, 0, 0, 0, 1};
  for (int k = 0; k < 3; ++k) EXPECT_EQ(centroid[k], expectedCentroid[k]);
  for (int k = 0; k < 9; ++k) EXPECT_EQ(axes[k], expectedAxes[k]) << k;
  EXPECT_EQ(eigenvalues[0], 4);
  EXPECT_EQ(eigenvalues[1], 1);
  EXPECT_EQ(eigenvalues[2], 0);
}

TEST(PlaneLeastSquares, EqualEigenvaluesKeepTheirOrder) {
  const float square[12] = {1, 1, 5, 1, -1, 5, -1, 1, 5, -1, -1, 5};
  float centroid[3], axes[9];
  ASSERT_EQ(fitPlaneLeastSquares(square, centroid, axes, nullptr, 4), 0);
  EXPECT_EQ(axes[0], 1);
  EXPECT_EQ(axes[4], 1);
  EXPECT_EQ(axes[8], 1);
}

TEST(PlaneLeastSquares, CoordinatesAreSummedInFloat) {
  // From 2^24 on, adding 1 in float is lost.
  const float points[9] = {16777216, 0, 0, 1, 0, 0, 1, 0, 0};
  float centroid[3], axes[9];
  ASSERT_EQ(fitPlaneLeastSquares(points, centroid, axes, nullptr, 3), 0);
  EXPECT_EQ(centroid[0], 16777216.0F / 3.0F);
  EXPECT_NE(centroid[0], 16777218.0F / 3.0F);
}

TEST(PlaneLeastSquares, BytesAreThoseOfThePlainForm) {
  for (int n = 1; n <= 300; ++n) {
    const auto points = randomPairs(n, static_cast<unsigned>(n), 0.01F * static_cast<float>(n)).a;
    float shipped[12] = {}, plain[12] = {};
    double values[3] = {}, plainValues[3] = {};
    ASSERT_EQ(fitPlaneLeastSquares(floatsOf(points), shipped, shipped + 3, values, n), 0);
    ASSERT_EQ(plain::fitPlaneLeastSquares(floatsOf(points), plain, plain + 3, plainValues, n), 0);
    EXPECT_EQ(std::memcmp(shipped, plain, sizeof plain), 0) << n;
    EXPECT_EQ(std::memcmp(values, plainValues, sizeof values), 0) << n;
  }
}

TEST(PlaneLeastSquares, NoPointsFail) {
  const float points[9] = {0, 0, 0, 1, 0, 0, 0, 1, 0};
  float centroid[3], axes[9];
  EXPECT_EQ(fitPlaneLeastSquares(points, centroid, axes, nullptr, 0), -1);
  EXPECT_EQ(fitPlaneLeastSquares(points, centroid, axes, nullptr, -5), -1);
}

TEST(PlaneLeastSquares, NotANumberGivesNotANumber) {
  const float nan = std::numeric_limits<float>::quiet_NaN();
  const float points[9] = {nan, 0, 0, 1, 0, 0, 0, 1, 0};
  float centroid[3], axes[9];
  EXPECT_EQ(fitPlaneLeastSquares(points, centroid, axes, nullptr, 3), 0);
  EXPECT_TRUE(std::isnan(centroid[0]));
  EXPECT_TRUE(std::isnan(axes[0]));
}

TEST(MeanPointToPlaneDistance, ByHandForANormalOfAnyLength) {
  const tagOzKPoint3Df32 points[2] = {{9, 9, 6}, {-9, 0, 3}};
  const float nan = std::numeric_limits<float>::quiet_NaN();
  const float axes[9] = {nan, nan, nan, nan, nan, nan, 0, 0, 2}, origin[3] = {1, 1, 5};
  EXPECT_EQ(meanPointToPlaneDistance(axes, origin, points, 2), 1.5F);
  EXPECT_TRUE(std::isnan(meanPointToPlaneDistance(axes, origin, points, 0)));
}

TEST(MeanPointToPlaneDistance, BytesAreThoseOfThePlainForm) {
  for (int n = 1; n <= 200; ++n) {
    const auto points = randomPairs(n, static_cast<unsigned>(n)).a;
    const float axes[9] = {0, 0, 0, 0, 0, 0, 0.3F, -0.2F, 0.9F}, origin[3] = {3, 70, -20};
    EXPECT_EQ(meanPointToPlaneDistance(axes, origin, points.data(), n),
              plain::meanPointToPlaneDistance(axes, origin, points.data(), n));
  }
}

} // namespace
} // namespace velmorn
