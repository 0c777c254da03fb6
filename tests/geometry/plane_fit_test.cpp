#include "geometry/plane_fit.h"

#include <cmath>
#include <cstdlib>
#include <cstring>

#include <gtest/gtest.h>

#include "geometry/plane_clouds.h"

namespace velmorn {
namespace {

using Points = std::vector<tagOzKPoint3Df32>;

struct Fit {
  int status = 0;
  double plane[4] = {7, 7, 7, 7};
  std::vector<unsigned char> mask;
};

Fit fit(const Points& points, double threshold, unsigned char maskBefore = 0) {
  const int n = static_cast<int>(points.size());
  Fit result;
  result.mask.assign(points.size(), maskBefore);
  std::vector<unsigned char> work(12 * points.size() + 16);
  result.status = fitPlaneByRansacV2(points.data(), n, result.mask.data(), 0.999, threshold,
                                     result.plane, work.data());
  return result;
}

int inliersOf(const Fit& result) {
  return static_cast<int>(std::count(result.mask.begin(), result.mask.end(), 1));
}

double distance(const double plane[4], const tagOzKPoint3Df32& p) {
  return std::abs(plane[0] * static_cast<double>(p.x) + plane[1] * static_cast<double>(p.y) +
                  plane[2] * static_cast<double>(p.z) + plane[3]);
}

TEST(RansacUpdateIterCount, TableByHand) {
  constexpr int kMax = 30000;
  EXPECT_EQ(ransacUpdateIterCount(0.999, 0.0, 10, kMax), 0);    // no outliers: denominator 0
  EXPECT_EQ(ransacUpdateIterCount(0.999, 0.5, 10, kMax), 52);   // ln 0.001 / ln 0.875 = 51.73
  EXPECT_EQ(ransacUpdateIterCount(0.999, 0.9, 10, kMax), 6904); // ln 0.001 / ln 0.999 = 6904.3
  EXPECT_EQ(ransacUpdateIterCount(0.0, 0.5, 10, kMax), 0);      // ln 1
  EXPECT_EQ(ransacUpdateIterCount(0.999, 1.0, 10, kMax), kMax); // ln 1 below
}

TEST(RansacUpdateIterCount, ArgumentsAreBroughtIntoRange) {
  EXPECT_EQ(ransacUpdateIterCount(0.999, -3, 10, 30000), 0);
  EXPECT_EQ(ransacUpdateIterCount(0.999, 3, 10, 30000), 30000);
  EXPECT_EQ(ransacUpdateIterCount(-1, 0.5, 10, 30000), 0);
  EXPECT_EQ(ransacUpdateIterCount(5, 0.5, 10, 30000), 103); // ln 1e-6 / ln 0.875 = 103.46
  EXPECT_EQ(ransacUpdateIterCount(1, 0.5, 10, 30000), 103);
}

TEST(RansacUpdateIterCount, NeverMoreThanTheLimit) {
  EXPECT_EQ(ransacUpdateIterCount(0.999, 0.9, 10, 6000), 6000);
  EXPECT_EQ(ransacUpdateIterCount(0.999, 0.9, 10, 0), 0);
  EXPECT_EQ(ransacUpdateIterCount(std::nan(""), 0.5, 10, 42), 42);
}

TEST(RansacUpdateIterCount, CountOfPointsDoesNotMatter) {
  for (const int n : {-1, 0, 3, 1000000})
    EXPECT_EQ(ransacUpdateIterCount(0.999, 0.5, n, 30000), 52);
}

TEST(SampleThreePlanePoints, IndicesDifferAndNameTheirPoints) {
  const Points points = PlaneCloud{5}.points();
  std::srand(1);
  for (int run = 0; run < 300; ++run) {
    float sample[9];
    int indices[3];
    ASSERT_EQ(sampleThreePlanePoints(points.data(), 5, sample, indices), 0);
    EXPECT_TRUE(indices[0] != indices[1] && indices[0] != indices[2] && indices[1] != indices[2]);
    for (int k = 0; k < 3; ++k)
      EXPECT_EQ(std::memcmp(sample + 3 * k, &points[static_cast<std::size_t>(indices[k])], 12), 0);
  }
}

TEST(SampleThreePlanePoints, IndicesAreTheRuntimesNumbersModuloCount) {
  const Points points = PlaneCloud{1000}.points();
  std::srand(1);
  const int expected[3] = {std::rand() % 1000, std::rand() % 1000, std::rand() % 1000};
  std::srand(1);
  float sample[9];
  int indices[3];
  ASSERT_EQ(sampleThreePlanePoints(points.data(), 1000, sample, indices), 0);
  for (int k = 0; k < 3; ++k) EXPECT_EQ(indices[k], expected[k]);
}

// The extents of the test for a degenerate sample carry a sign. Which samples are drawn again
// decides every later number of the sequence, so all three of its surprises stay.
TEST(SampleThreePlanePoints, SampleWithItsLastPointLowestIsDrawnAgain) {
  const Points points = {{0, 0, 0}, {5, 1, 7}, {-1, -2, -3}};
  std::srand(1);
  for (int run = 0; run < 200; ++run) {
    float s[9];
    int indices[3];
    ASSERT_EQ(sampleThreePlanePoints(points.data(), 3, s, indices), 0);
    EXPECT_FALSE(s[6] <= s[0] && s[7] <= s[1] && s[8] <= s[2]);
  }
}

TEST(SampleThreePlanePoints, RightTriangleAlongTheAxesIsRefused) {
  const Points points = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}};
  float sample[9];
  int indices[3];
  EXPECT_EQ(sampleThreePlanePoints(points.data(), 3, sample, indices), -1);
  EXPECT_EQ(fit(points, 0.5).status, -1);
}

TEST(SampleThreePlanePoints, LineAlongOneAxisPasses) {
  Points points;
  for (int i = 0; i < 10; ++i) points.push_back({static_cast<float>(i), 2, 3});
  float sample[9];
  int indices[3];
  EXPECT_EQ(sampleThreePlanePoints(points.data(), 10, sample, indices), 0);
  const Fit result = fit(points, 0.5);
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(inliersOf(result), 10);
  EXPECT_NEAR(result.plane[0], 0, 1e-6);
}

TEST(SampleThreePlanePoints, TooFewPointsDrawNothing) {
  const Points points = PlaneCloud{2}.points();
  std::srand(5);
  const int next = std::rand();
  std::srand(5);
  float sample[9];
  int indices[3];
  for (const int n : {2, 1, 0, -1})
    EXPECT_EQ(sampleThreePlanePoints(points.data(), n, sample, indices), -1);
  EXPECT_EQ(std::rand(), next);
}

TEST(PlaneFit, ThreePointsGiveTheirPlane) {
  const Points points = {{0, 0, 1}, {4, 1, 3}, {1, 5, 7}};
  const Fit result = fit(points, 0.01);
  ASSERT_EQ(result.status, 0);
  EXPECT_EQ(result.mask, std::vector<unsigned char>(3, 1));
  for (const tagOzKPoint3Df32& p : points) EXPECT_LT(distance(result.plane, p), 1e-5);
}

TEST(PlaneFit, TooFewPointsLeaveEverythingTheGeneratorToo) {
  std::srand(5);
  const int next = std::rand();
  std::srand(5);
  for (const int n : {2, 0, -1, -2147483647 - 1}) {
    unsigned char mask[3] = {9, 9, 9}, work[36];
    double plane[4] = {7, 7, 7, 7};
    const Points points = PlaneCloud{3}.points();
    EXPECT_EQ(fitPlaneByRansacV2(points.data(), n, mask, 0.999, 1, plane, work), -1);
    EXPECT_EQ(mask[0], 9);
    EXPECT_EQ(plane[3], 7);
  }
  EXPECT_EQ(std::rand(), next);
}

TEST(PlaneFit, PointsOnOneLineFail) {
  Points points;
  for (int i = 0; i < 8; ++i) {
    const float at = static_cast<float>(i);
    points.push_back({at, at, at});
  }
  const Fit result = fit(points, 0.5);
  EXPECT_EQ(result.status, -1);
  EXPECT_EQ(result.plane[0], 7);
}

TEST(PlaneFit, NoisyCloudComesWithinTheNoise) {
  for (const double outliers : {0.0, 0.3, 0.6, 0.8}) {
    PlaneCloud cloud{4000};
    cloud.outlierRatio = outliers;
    const Fit result = fit(cloud.points(), 0.2);
    ASSERT_EQ(result.status, 0);
    const double length = std::sqrt(0.3 * 0.3 + 0.1 * 0.1 + 1);
    const double along = (0.3 * result.plane[0] - 0.1 * result.plane[1] - result.plane[2]) / length;
    EXPECT_GT(std::abs(along), 1 - 1e-6) << outliers; // 0.08 degrees
    EXPECT_NEAR(inliersOf(result), 4000 * (1 - outliers), 80) << outliers;
  }
}

// Four points at z = +-0.5 around the plane z = 0, placed so that they neither lift nor tilt it.
// While hypotheses are compared they count as inliers, for the normal is taken a little too long
// there; in the end, a point at the threshold is out.
TEST(PlaneFit, PointAtThresholdIsOutlier) {
  Points points;
  for (const tagOzKPoint3Df32& p : PlaneCloud{60}.points()) points.push_back({p.x, p.y, 0});
  for (const float side : {1.0F, -1.0F}) {
    points.push_back({5 * side, 5 * side, 0.5F});
    points.push_back({5 * side, -5 * side, -0.5F});
  }
  Fit result = fit(points, 0.5);
  ASSERT_EQ(result.status, 0);
  EXPECT_EQ(std::abs(result.plane[2]), 1.0);
  EXPECT_EQ(std::abs(result.plane[3]), 0.0);
  for (std::size_t i = 0; i < 64; ++i) EXPECT_EQ(result.mask[i], i < 60 ? 1 : 0) << i;
  result = fit(points, std::nextafter(0.5, 1.0));
  EXPECT_EQ(inliersOf(result), 64);
}

TEST(PlaneFit, NoHypothesisLeavesTheMaskToTheRefit) {
  const Points points = PlaneCloud{20}.points();
  for (const double threshold : {0.0, -1.0, std::nan("")}) {
    EXPECT_EQ(fit(points, threshold).status, -1);
    const Fit result = fit(points, threshold, 1); // all of them are fitted, none is near enough
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(inliersOf(result), 0);
    EXPECT_NEAR(std::abs(result.plane[2]), 0.953, 0.01);
    EXPECT_EQ(fit(points, threshold, 2).status, -1); // only the byte 1 marks an inlier
  }
}

TEST(PlaneFit, EqualInputsGiveEqualResults) {
  PlaneCloud cloud{500};
  cloud.outlierRatio = 0.4;
  const Fit first = fit(cloud.points(), 0.2);
  std::srand(99);
  const Fit second = fit(cloud.points(), 0.2);
  EXPECT_EQ(first.mask, second.mask);
  EXPECT_EQ(std::memcmp(first.plane, second.plane, sizeof first.plane), 0);
}

TEST(PlaneFit, WorkBufferStaysWithinItsBytes) {
  constexpr std::size_t kGuard = 64;
  for (const int n : {3, 4, 5, 17, 100})
    for (std::size_t offset = 0; offset < 16; ++offset) {
      const Points points = PlaneCloud{n}.points();
      const std::size_t size = 12 * points.size();
      std::vector<unsigned char> memory(2 * kGuard + size, 0xEE), mask(points.size());
      unsigned char* given = memory.data() + kGuard - 16 + offset;
      unsigned char* start = given + (16 - reinterpret_cast<std::uintptr_t>(given) % 16) % 16;
      double plane[4];
      ASSERT_EQ(fitPlaneByRansacV2(points.data(), n, mask.data(), 0.999, 0.2, plane, given), 0);
      for (unsigned char* byte = memory.data(); byte < memory.data() + memory.size(); ++byte)
        EXPECT_TRUE((byte >= start && byte < start + size) || *byte == 0xEE) << n;
    }
}

} // namespace
} // namespace velmorn
