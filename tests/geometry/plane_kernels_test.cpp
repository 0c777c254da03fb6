// Every vector form of the plane fit's passes gives the plain form's results.
#include "geometry/plane_kernels.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "geometry/point_clouds.h"

namespace velmorn {
namespace {

std::vector<VectorLevel> runnableLevels() {
  std::vector<VectorLevel> levels{VectorLevel::kNone};
  for (const VectorLevel level : {VectorLevel::kAvx2, VectorLevel::kAvx512})
    if (supportedVectorLevel() >= level) levels.push_back(level);
  return levels;
}

std::vector<unsigned char> marked(VectorLevel level, const std::vector<tagOzKPoint3Df32>& points,
                                  const PlaneTest& test) {
  std::vector<unsigned char> mask(points.size() + 8, 77);
  planeKernels(level).markInliers(points.data(), static_cast<int>(points.size()), test,
                                  mask.data());
  return mask;
}

int counted(const std::vector<unsigned char>& mask) {
  int count = 0;
  for (const unsigned char byte : mask) count += byte == 1 ? 1 : 0;
  return count;
}

void expectSame(const std::vector<tagOzKPoint3Df32>& points, const PlaneTest& test) {
  const std::vector<unsigned char> plain = marked(VectorLevel::kNone, points, test);
  const int n = static_cast<int>(points.size()), count = counted(plain);
  for (const VectorLevel level : runnableLevels()) {
    EXPECT_EQ(marked(level, points, test), plain) << n;
    const CountInliers countInliers = planeKernels(level).countInliers;
    EXPECT_EQ(countInliers(points.data(), n, test, -1), count) << n;
    EXPECT_EQ(countInliers(points.data(), n, test, count - 1), count) << n;
    for (const int toBeat : {count, count + 1, n})
      EXPECT_LE(countInliers(points.data(), n, test, toBeat), toBeat) << n;
  }
}

TEST(PlaneKernels, EverySmallCountGivesThePlainResult) {
  for (int n = 0; n <= 70; ++n)
    expectSame(randomPairs(n, static_cast<unsigned>(n)).a, {0.6, 0.0, 0.8, -10, 200});
}

TEST(PlaneKernels, LargeCountsGiveThePlainResult) {
  for (const int n : {4095, 4096, 4097, 9001})
    expectSame(randomPairs(n, 2).a, {0.6, -0.2, 0.77, 30, 100});
}

TEST(PlaneKernels, AValueAtTheCutoffIsAnInlier) {
  const std::vector<tagOzKPoint3Df32> points(11, {0, 0, 5});
  const double below = std::nextafter(5.0, 0.0);
  for (const VectorLevel level : runnableLevels()) {
    EXPECT_EQ(counted(marked(level, points, {0, 0, 1, 0, 5})), 11);
    EXPECT_EQ(counted(marked(level, points, {0, 0, -1, 0, 5})), 11);
    EXPECT_EQ(counted(marked(level, points, {0, 0, 1, 0, below})), 0);
  }
}

TEST(PlaneKernels, NotANumberAndInfinityAreOutliers) {
  std::vector<tagOzKPoint3Df32> points(17, {1, 1, 1});
  points[3].x = std::numeric_limits<float>::quiet_NaN();
  points[9].z = std::numeric_limits<float>::infinity();
  points[16].y = -std::numeric_limits<float>::infinity();
  const PlaneTest everything{0.6, 0.1, 0.8, 0, std::numeric_limits<double>::max()};
  for (const VectorLevel level : runnableLevels())
    EXPECT_EQ(counted(marked(level, points, everything)), 14);
}

TEST(PlaneKernels, NoCutoffHasNoInliers) {
  const std::vector<tagOzKPoint3Df32> points(19, {0, 0, 0});
  for (const VectorLevel level : runnableLevels())
    for (const double none : {-1.0, std::numeric_limits<double>::quiet_NaN()})
      EXPECT_EQ(counted(marked(level, points, {0, 0, 1, 0, none})), 0);
}

} // namespace
} // namespace velmorn
