// Thinning: means by hand, borders, hostile sides.
#include "velmorn/voxel_grid.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <limits>
#include <vector>

namespace velmorn::tool {
namespace {

// In the order of x.
std::vector<CloudPoint> pointsOf(const VoxelGrid& grid) {
  std::vector<CloudPoint> points;
  grid.forEach([&](const CloudPoint& point) { points.push_back(point); });
  std::sort(points.begin(), points.end(),
            [](const CloudPoint& a, const CloudPoint& b) { return a.position[0] < b.position[0]; });
  return points;
}

TEST(VoxelGrid, KeepsMeansAndTheCameraOfMost) {
  VoxelGrid grid(10);
  EXPECT_TRUE(grid.add({{1, 2, 3}, {10, 0, 255}, 0}));
  EXPECT_TRUE(grid.add({{2, 2, 3}, {20, 0, 255}, 1}));
  EXPECT_TRUE(grid.add({{6, 8, 9}, {60, 0, 252}, 1}));
  const std::vector<CloudPoint> points = pointsOf(grid);
  ASSERT_EQ(points.size(), 1U);
  EXPECT_LT(cv::norm(points[0].position - cv::Vec3f(3, 4, 5)), 1e-6);
  EXPECT_EQ(points[0].colour, cv::Vec3b(30, 0, 254));
  EXPECT_EQ(points[0].camera, 1);
}

TEST(VoxelGrid, OfEqualsTheFirstCameraWins) {
  VoxelGrid grid(10);
  for (const std::uint8_t camera : std::vector<std::uint8_t>{4, 4, 6, 6, 8})
    grid.add({{1, 1, 1}, {}, camera});
  EXPECT_EQ(pointsOf(grid).front().camera, 4);
  grid.add({{1, 1, 1}, {}, 8});
  grid.add({{1, 1, 1}, {}, 8});
  EXPECT_EQ(pointsOf(grid).front().camera, 8);
}

// A border belongs to the voxel above it, also below 0.
TEST(VoxelGrid, BordersBelongToTheVoxelAbove) {
  VoxelGrid grid(2);
  for (const float x : {-2.5F, -2.0F, -0.5F, 0.0F, 1.5F, 2.0F}) grid.add({{x, 0, 0}, {}, 0});
  const std::vector<CloudPoint> points = pointsOf(grid);
  ASSERT_EQ(points.size(), 4U);
  EXPECT_EQ(points[0].position[0], -2.5F);
  EXPECT_EQ(points[1].position[0], -1.25F);
  EXPECT_EQ(points[2].position[0], 0.75F);
  EXPECT_EQ(points[3].position[0], 2.0F);
}

TEST(VoxelGrid, EveryAxisTellsVoxelsApart) {
  VoxelGrid grid(1);
  for (int axis = 0; axis < 3; ++axis) {
    CloudPoint point;
    point.position[axis] = 1.5F;
    grid.add(point);
  }
  EXPECT_EQ(pointsOf(grid).size(), 3U);
}

// 2^31 sides of 1e-6 end at 2147.5.
TEST(VoxelGrid, PointsBeyondItsReachHaveNoVoxel) {
  VoxelGrid grid(1e-6);
  EXPECT_TRUE(grid.add({{2147, 0, 0}, {}, 0}));
  EXPECT_TRUE(grid.add({{-2147, 0, 0}, {}, 0}));
  EXPECT_FALSE(grid.add({{2148, 0, 0}, {}, 0}));
  EXPECT_FALSE(grid.add({{0, 0, -2148}, {}, 0}));
  VoxelGrid tiny(std::numeric_limits<float>::denorm_min());
  EXPECT_FALSE(tiny.add({{1, 0, 0}, {}, 0}));
  EXPECT_EQ(pointsOf(grid).size(), 2U);
}

TEST(VoxelGrid, HugeVoxelsKeepTheirPointsPlaces) {
  VoxelGrid grid(std::numeric_limits<float>::max());
  grid.add({{-5, 3, 2}, {}, 0});
  grid.add({{-7, 3, 2}, {}, 0});
  EXPECT_EQ(pointsOf(grid).front().position, cv::Vec3f(-6, 3, 2));
}

TEST(VoxelGrid, ManyPointsInOneVoxel) {
  VoxelGrid grid(100);
  for (int i = 0; i < 100000; ++i) {
    grid.add(
        {{static_cast<float>(i % 100), 50, 50}, {static_cast<std::uint8_t>(i % 2), 0, 200}, 0});
  }
  const CloudPoint mean = pointsOf(grid).front();
  EXPECT_NEAR(mean.position[0], 49.5, 1e-4);
  EXPECT_EQ(mean.colour[2], 200);
}

} // namespace
} // namespace velmorn::tool
