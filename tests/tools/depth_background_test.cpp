// Depth backgrounds: a tilted plane worked out by hand, and clouds that give none.
#include "velmorn/depth_background.h"

#include <gmock/gmock.h>

#include "tools/expect_tool_error.h"

namespace velmorn::tool {
namespace {

// z = 100 + x / 2 + y at the middles of 4 x 3 cells of side 1.
PointCloud tiltedPlane() {
  PointCloud cloud;
  for (int row = 0; row < 3; ++row) {
    for (int column = 0; column < 4; ++column) {
      const double x = column + 0.5;
      const double y = row + 0.5;
      addPoint(cloud, x, y, 100 + x / 2 + y);
    }
  }
  return cloud;
}

float planeAt(int row, int column) {
  return 100 + (static_cast<float>(column) + 0.5F) / 2 + static_cast<float>(row) + 0.5F;
}

BackgroundRequest request(const tagOzKRect2Df32& region) {
  BackgroundRequest request;
  request.region = region;
  request.cell = 1;
  return request;
}

// The fifth column and the fourth row have no points and take the value beside them.
TEST(DepthBackground, FillsAGridByHand) {
  PointCloud cloud = tiltedPlane();
  const DepthBackground background = buildBackground(cloud, request({0, 0, 4, 3}));
  ASSERT_EQ(background.heights.size(), cv::Size(5, 4));
  for (int row = 0; row < 4; ++row) {
    for (int column = 0; column < 5; ++column) {
      EXPECT_EQ(background.heights.at<float>(row, column),
                planeAt(std::min(row, 2), std::min(column, 3)));
    }
  }
}

TEST(DepthBackground, TakesTheCloudsOwnRegion) {
  PointCloud cloud = tiltedPlane();
  const tagOzKRect2Df32 region = boundingRegion(cloud);
  EXPECT_EQ(region.x1, 0.5F);
  EXPECT_EQ(region.y1, 0.5F);
  EXPECT_EQ(region.x2, 3.5F);
  EXPECT_EQ(region.y2, 2.5F);
  EXPECT_EQ(pointsIn(cloud, region), 12U);
  EXPECT_EQ(pointsIn(cloud, {0.5F, 0.5F, 1.5F, 0.5F}), 2U);
  const DepthBackground background = buildBackground(cloud, request(region));
  ASSERT_EQ(background.heights.size(), cv::Size(4, 3));
  EXPECT_EQ(background.heights.at<float>(2, 3), planeAt(2, 3));
}

TEST(DepthBackground, KeepsTheLowestOrTheHighest) {
  PointCloud cloud;
  addPoint(cloud, 0, 0, 5);
  addPoint(cloud, 0, 0, 3);
  BackgroundRequest one = request({0, 0, 0, 0});
  EXPECT_EQ(buildBackground(cloud, one).heights.at<float>(0), 3);
  one.keepHighest = true;
  EXPECT_EQ(buildBackground(cloud, one).heights.at<float>(0), 5);
}

TEST(DepthBackground, SaysWhyThereIsNone) {
  PointCloud cloud = tiltedPlane();
  EXPECT_EQ(toolError([&] {
              buildBackground(cloud, request({50, 50, 60, 60}));
            }),
            "no point is in the region");
  BackgroundRequest many = request({0, 0, 4, 3});
  many.minPoints = 13;
  EXPECT_EQ(toolError([&] { buildBackground(cloud, many); }),
            "12 usable points, at least 13 are asked for");
  BackgroundRequest fine = request({0, 0, 4, 3});
  fine.cell = 1e-4F;
  EXPECT_THAT(toolError([&] { buildBackground(cloud, fine); }),
              testing::HasSubstr("would have 40001 x 30001 cells"));
}

} // namespace
} // namespace velmorn::tool
