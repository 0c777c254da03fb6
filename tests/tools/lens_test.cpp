// Lines of sight: OpenCV's own projection taken back.
#include "velmorn/lens.h"

#include <gtest/gtest.h>

#include "support/board_renderer.h"

namespace velmorn::tool {
namespace {

class Lens : public testing::Test {
 protected:
  Lens() {
    model.intrinsic = projector.intrinsicRecord();
    model.distortion = projector.distortionRecord();
  }
  cv::Point2d project(const cv::Point2d& ray) const {
    const cv::Point3f point(static_cast<float>(ray.x), static_cast<float>(ray.y), 1);
    return projectPoints(projector, cv::Matx44d::eye(), {point})[0];
  }

  const velmorn::CameraModel projector = distortedCamera({640, 480}, 500);
  CameraModel model;
};

TEST_F(Lens, TakesTheProjectionBack) {
  for (const cv::Point2d ray :
       {cv::Point2d(0, 0), cv::Point2d(0.5, -0.3), cv::Point2d(-0.55, 0.4)}) {
    const cv::Point2d back = raysThrough(model, {project(ray)})[0];
    EXPECT_NEAR(back.x, ray.x, 1e-6);
    EXPECT_NEAR(back.y, ray.y, 1e-6);
    const cv::Point2d place = withoutDistortion(model, {project(ray)})[0];
    EXPECT_NEAR(place.x, ray.x * projector.matrix(0, 0) + projector.matrix(0, 2), 1e-3);
    EXPECT_NEAR(place.y, ray.y * projector.matrix(1, 1) + projector.matrix(1, 2), 1e-3);
  }
}

TEST_F(Lens, LeavesPixelsOfAPlainLensAsTheyAre) {
  model.distortion = {};
  const cv::Point2d pixel(12.3, 45.6);
  EXPECT_EQ(withoutDistortion(model, {pixel})[0], pixel);
  EXPECT_TRUE(raysThrough(model, {}).empty());
}

// 3/5 and 4/5 off the axis, 1 together: k1 = 0.01 moves it by a hundredth, 5 pixels of 500.
TEST_F(Lens, TellsHowFarCornersMove) {
  CameraModel camera;
  camera.intrinsic = {{500, 0, 300, 0, 500, 400, 0, 0, 1}};
  EXPECT_EQ(largestShift(camera, {601, 801}), 0);
  camera.distortion.coeffs[0] = 0.01;
  EXPECT_NEAR(largestShift(camera, {601, 801}), 5, 1e-9);
  camera.distortion.coeffs[0] = -0.5; // never gets as far as the corners
  EXPECT_NEAR(largestShift(camera, {601, 801}), 250, 1e-9);
}

} // namespace
} // namespace velmorn::tool
