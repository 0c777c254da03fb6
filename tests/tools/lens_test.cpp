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

} // namespace
} // namespace velmorn::tool
