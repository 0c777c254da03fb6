// Whether a simulated camera sees a board.
#include "velmorn/simulate_view.h"

#include <gtest/gtest.h>

#include "velmorn/pose.h"

namespace velmorn::tool {
namespace {

// f = 1000, 1280 x 960, looking down from 1000: a pixel per length unit on the ground.
SceneCamera cameraAbove() {
  SceneCamera camera;
  camera.model.intrinsic = {{1000, 0, 640, 0, 1000, 480, 0, 0, 1}};
  camera.model.imageSize = {1280, 960};
  camera.worldFromCam = lookingDown({0, 0, 1000});
  return camera;
}

const PlainBoard kBoard = {{9, 6}, 40};

// On the ground with its first corner at x, y; turned about the vertical from above.
cv::Matx44d boardAt(double x, double y, double turnDegrees = 0, double tiltDegrees = 0) {
  cv::Matx44d worldFromBoard = lookingDown({x, y, 0}, tiltDegrees);
  const double c = std::cos(turnDegrees * CV_PI / 180), s = std::sin(turnDegrees * CV_PI / 180);
  return worldFromBoard * cv::Matx44d(c, -s, 0, 0, s, c, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1);
}

PlainView viewOf(const cv::Matx44d& worldFromBoard) {
  return plainViewOf(cameraAbove(), kBoard, worldFromBoard);
}

TEST(PlainBoard, OutlineHasTheQuietZone) {
  const std::vector<cv::Point3d> outline = outlineOf(kBoard);
  ASSERT_EQ(outline.size(), 4U);
  EXPECT_LT(cv::norm(outline[0] - cv::Point3d(-68, -68, 0)), 1e-9);
  EXPECT_LT(cv::norm(outline[2] - cv::Point3d(9.7 * 40, 6.7 * 40, 0)), 1e-9);
  EXPECT_EQ(middleOf(kBoard), cv::Point3d(160, 100, 0));
}

// The paper reaches 68 to the left of the first corner: its edge is at pixel 640 + x - 68.
TEST(PlainView, WholeUpToTheMargin) {
  EXPECT_EQ(viewOf(boardAt(-160, 100)), PlainView::kUsable);
  EXPECT_EQ(viewOf(boardAt(-565, 100)), PlainView::kUsable);
  EXPECT_EQ(viewOf(boardAt(-567, 100)), PlainView::kNotWhole);
  EXPECT_EQ(viewOf(boardAt(3000, 100)), PlainView::kNotWhole);
}

TEST(PlainView, TurnedBoardBeginsAtAnotherCorner) {
  EXPECT_EQ(viewOf(boardAt(0, 0, 50)), PlainView::kUsable);
  EXPECT_EQ(viewOf(boardAt(0, 0, 70)), PlainView::kTurned);
  EXPECT_EQ(viewOf(boardAt(0, 0, 180)), PlainView::kTurned);
}

TEST(PlainView, FlatOrSmallBoardsArePoor) {
  EXPECT_EQ(viewOf(boardAt(-160, 100, 0, 40)), PlainView::kUsable);
  EXPECT_EQ(viewOf(boardAt(-160, 100, 0, 55)), PlainView::kPoor);
  EXPECT_EQ(viewOf(boardAt(-160, 100, 0, 180)), PlainView::kPoor); // from behind
  const PlainBoard small = {{9, 6}, 15};
  EXPECT_EQ(plainViewOf(cameraAbove(), small, boardAt(0, 0)), PlainView::kPoor);
}

// x (1 - r^2) brings x = 1.3 back to -0.9, into the image.
TEST(PlainView, LensDoesNotBringPointsBack) {
  SceneCamera camera = cameraAbove();
  camera.model.distortion.coeffs[0] = -1;
  EXPECT_TRUE(pixelOf(camera.model, {0.1, 0, 1}));
  EXPECT_NEAR(pixelOf(camera.model, {0.1, 0, 1})->x, 640 + 99, 1e-9);
  EXPECT_FALSE(pixelOf(camera.model, {1.3, 0, 1}));
  EXPECT_FALSE(pixelOf(camera.model, {0.1, 0, -1}));
}

} // namespace
} // namespace velmorn::tool
