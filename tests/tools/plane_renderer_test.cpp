// Pictures on a plane before a background.
#include "velmorn/plane_renderer.h"

#include <gtest/gtest.h>

#include "velmorn/board_picture.h"

namespace velmorn::tool {
namespace {

// f = 100, 41 x 41 pixels, principal point in the middle.
cv::Mat_<cv::Vec2f> cornerRays() {
  cv::Mat_<cv::Vec2f> rays(42, 42);
  for (int y = 0; y < 42; ++y) {
    for (int x = 0; x < 42; ++x) {
      rays(y, x) = {(static_cast<float>(x) - 20.5F) / 100, (static_cast<float>(y) - 20.5F) / 100};
    }
  }
  return rays;
}

cv::Matx44d planeAt(double x, double y, double z) {
  return {1, 0, 0, x, 0, 1, 0, y, 0, 0, 1, z, 0, 0, 0, 1};
}

// Squares of 10 pixels: the pixel at the origin has a quarter of each of four squares, 15 to its
// left the squares have ended.
TEST(PlaneRenderer, BackgroundShowsWhereThePictureIsNot) {
  const PlaneRenderer renderer(cornerRays());
  EXPECT_EQ(renderer.imageSize(), cv::Size(41, 41));
  cv::Mat_<float> background(41, 41, 77.0F);
  background(20, 5) = 99;
  const cv::Mat_<float> image =
      renderer.render(BoardPicture(3, 3, 0), 10, planeAt(0, 0, 100), background);
  EXPECT_EQ(image(20 - 5, 20 - 5), kRenderedBlack);
  EXPECT_EQ(image(20 - 5, 20 + 5), kRenderedWhite);
  EXPECT_NEAR(image(20, 20), (kRenderedBlack + kRenderedWhite) / 2, 5);
  EXPECT_EQ(image(20, 5), 99);
  EXPECT_EQ(image(5, 5), 77);
  EXPECT_NEAR(image(20 - 5, 10), (77 + kRenderedBlack) / 2, 1); // half of it
}

TEST(PlaneRenderer, PlaneBehindTheCameraIsNotSeen) {
  const cv::Mat_<float> background(41, 41, 77.0F);
  const cv::Mat_<float> image =
      PlaneRenderer(cornerRays())
          .render(BoardPicture(3, 3, 0), 10, planeAt(0, 0, -100), background);
  EXPECT_EQ(cv::norm(image, background, cv::NORM_INF), 0);
}

TEST(BoardPicture, AreasByHand) {
  const BoardPicture picture(3, 4, 0.5);
  EXPECT_EQ(picture.shade(picture.area({-0.5F, -0.5F})), kRenderedBlack);
  EXPECT_EQ(picture.shade(picture.area({0.5F, -0.5F})), kRenderedWhite);
  EXPECT_EQ(picture.shade(picture.area({2.5F, 3.5F})), kRenderedWhite); // square (4, 5)
  EXPECT_EQ(picture.shade(picture.area({3.2F, 0})), kRenderedWhite);    // quiet zone
  EXPECT_EQ(picture.area({3.6F, 0}), PlanePicture::kNoArea);
  EXPECT_EQ(picture.area({0, -1.6F}), PlanePicture::kNoArea);
}

} // namespace
} // namespace velmorn::tool
