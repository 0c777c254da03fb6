// Coverage of an image by the board's corners, worked out by hand.
#include "velmorn/coverage.h"

#include <gmock/gmock.h>

#include "tools/record_sample.h"

namespace velmorn::tool {
namespace {

// Corners of a rectangle by its outer edges, in pixels from the image's outer corner.
std::vector<cv::Point2d> rectangle(double left, double top, double right, double bottom) {
  return {{left - 0.5, top - 0.5},
          {right - 0.5, top - 0.5},
          {left - 0.5, bottom - 0.5},
          {right - 0.5, bottom - 0.5}};
}

CameraRecord camera(cv::Size size, const std::vector<ShotRecord>& shots) {
  CameraRecord camera;
  camera.imageSize = size;
  camera.shots = shots;
  return camera;
}

TEST(Coverage, IsTheSharedAreaOfAllHulls) {
  // The left half, and the lower quarter: 1/2 + 1/8.
  const Coverage coverage =
      coverageOf(camera({640, 480}, {usedShot(1, rectangle(0, 0, 320, 480)),
                                     usedShot(1, rectangle(0, 360, 640, 480))}));
  EXPECT_EQ(coverage.shots.size(), cv::Size(32, 24));
  EXPECT_DOUBLE_EQ(coverage.percent, 62.5);
  EXPECT_EQ(coverage.used, 2U);
  EXPECT_EQ(coverage.shots.at<int>(0, 0), 1);
  EXPECT_EQ(coverage.shots.at<int>(23, 0), 2);
  EXPECT_EQ(coverage.shots.at<int>(0, 31), 0);
}

TEST(Coverage, CountsACellByItsCentre) {
  // Cells of 20 pixels; the second one's centre is at 30.
  EXPECT_DOUBLE_EQ(coverageOf(camera({640, 20}, {usedShot(1, rectangle(0, 0, 29, 20))})).percent,
                   100.0 / 32);
  EXPECT_DOUBLE_EQ(coverageOf(camera({640, 20}, {usedShot(1, rectangle(0, 0, 31, 20))})).percent,
                   200.0 / 32);
}

TEST(Coverage, HasAsManyCellsAlongTheLongerSide) {
  EXPECT_EQ(coverageOf(camera({100, 200}, {})).shots.size(), cv::Size(16, 32));
  EXPECT_EQ(coverageOf(camera({1, 100000}, {})).shots.size(), cv::Size(1, 32));
}

TEST(Coverage, LeavesOutRefusedShotsAndThoseWithoutAnArea) {
  ShotRecord refused = refusedShot("no-board");
  refused.corners = rectangle(0, 0, 640, 480);
  const Coverage coverage =
      coverageOf(camera({640, 480}, {refused, usedShot(1, {}), usedShot(1, {{5, 5}, {9, 9}})}));
  EXPECT_EQ(coverage.percent, 0);
  EXPECT_EQ(coverage.used, 2U);
}

TEST(Coverage, TakesCornersOutsideOfTheImage) {
  EXPECT_EQ(coverageOf(camera({640, 480}, {usedShot(1, rectangle(-1e6, -1e6, 1e6, 1e6))})).percent,
            100);
}

TEST(Coverage, IsEmptyWithoutAnImageSize) {
  EXPECT_TRUE(coverageOf(camera({}, {usedShot(1, rectangle(0, 0, 9, 9))})).shots.empty());
}

} // namespace
} // namespace velmorn::tool
