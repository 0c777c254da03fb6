// Rendered images: hand-worked depths, noise by its statistics, and the same bytes every time.
#include "velmorn/scene_render.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "velmorn/depth_image.h"
#include "velmorn/pose.h"

namespace velmorn::tool {
namespace {

// A belt of 4000 x 3000, everything on it lit from above.
Scene emptyBelt() {
  Scene scene;
  scene.belt.length = 4000;
  scene.belt.width = 3000;
  return scene;
}

Scene withBox(const cv::Vec3d& foot, const cv::Vec3d& size, double degrees = 0) {
  Scene scene = emptyBelt();
  scene.boxes = {{foot, size, degrees, {200, 100, 50}, 0, {}}};
  return scene;
}

// f = 100 pixels, principal point in the middle of 61 x 41 pixels.
SceneCamera cameraAt(const cv::Matx44d& worldFromCam) {
  SceneCamera camera;
  camera.model.intrinsic = {{100, 0, 30, 0, 100, 20, 0, 0, 1}};
  camera.model.imageSize = {61, 41};
  camera.worldFromCam = worldFromCam;
  return camera;
}

SceneCamera cameraAbove(double height) { return cameraAt(lookingDown({0, 0, height})); }

bool isSame(const cv::Mat& a, const cv::Mat& b) {
  return a.type() == b.type() && a.size() == b.size() && cv::norm(a, b, cv::NORM_INF) == 0;
}

int missing(const cv::Mat& depth) {
  return static_cast<int>(depth.total()) - cv::countNonZero(depth);
}

// Depth is along the camera's axis: the same at the corners as in the middle.
TEST(SceneDepth, PlaneHasTheCamerasHeightEverywhere) {
  const cv::Mat depth = renderDepth(emptyBelt(), cameraAbove(1500));
  EXPECT_TRUE(isSame(depth, cv::Mat(41, 61, CV_16UC1, cv::Scalar(1500))));
}

// Seen from 1000 a box 200 high is 800 away: 8 length units per pixel, so that its 80 x 48 cover
// 5 pixels to the sides of the middle and 3 up and down.
TEST(SceneDepth, TopOfBox) {
  const cv::Mat depth = renderDepth(withBox({0, 0, 0}, {80.1, 48.1, 200}), cameraAbove(1000));
  cv::Mat expected(41, 61, CV_16UC1, cv::Scalar(1000));
  expected(cv::Rect(25, 17, 11, 7)) = 800;
  EXPECT_TRUE(isSame(depth, expected));
}

// The pixel 20 right of the middle looks 1 in 5 to the side: on the end of a box at x = 250 it is
// 250 * 5 = 1250 away, 250 high.
TEST(SceneDepth, EndOfBox) {
  const Scene scene = withBox({300, 0, 0}, {100, 100, 400}, 0);
  EXPECT_EQ(renderDepth(scene, cameraAbove(1500)).at<std::uint16_t>(20, 50), 1250);
}

TEST(SceneDepth, NothingSeenIsNoMeasurement) {
  const cv::Mat upwards = renderDepth(emptyBelt(), cameraAt(lookingDown({0, 0, 1500}, 180)));
  EXPECT_EQ(missing(upwards), 61 * 41);

  // A belt that reaches x = 105 is seen by pixels of up to 10 right of the middle.
  Scene scene = emptyBelt();
  scene.belt.length = 210;
  const cv::Mat depth = renderDepth(scene, cameraAbove(1000));
  EXPECT_EQ(depth.at<std::uint16_t>(20, 40), 1000);
  EXPECT_EQ(depth.at<std::uint16_t>(20, 41), 0);
  EXPECT_EQ(depth.at<std::uint16_t>(20, 20), 1000);
  EXPECT_EQ(depth.at<std::uint16_t>(20, 19), 0);
}

// 45 degrees towards x from 1000 up: the axis meets the belt 1000 * sqrt(2) away. Pixels on the
// right look farther along the belt.
TEST(SceneDepth, TiltedCameraSeesFartherOnTheRight) {
  const cv::Mat depth = renderDepth(emptyBelt(), cameraAt(lookingDown({-500, 0, 1000}, 45)));
  EXPECT_EQ(depth.at<std::uint16_t>(20, 30), 1414);
  // x/z = 0.1: 1000 = z (cos 45 - 0.1 sin 45).
  EXPECT_EQ(depth.at<std::uint16_t>(20, 40), 1571);
  EXPECT_EQ(depth.at<std::uint16_t>(20, 20), 1286);
}

TEST(SceneDepth, CountsHaveTheStep) {
  DepthEffects effects;
  effects.step = 0.25;
  EXPECT_EQ(renderDepth(emptyBelt(), cameraAbove(1500), effects).at<std::uint16_t>(0, 0), 6000);
  // 65535 is the last count; beyond it, and below 1, there is none.
  effects.step = 1;
  EXPECT_EQ(renderDepth(emptyBelt(), cameraAbove(65535), effects).at<std::uint16_t>(20, 30), 65535);
  EXPECT_EQ(renderDepth(emptyBelt(), cameraAbove(65536), effects).at<std::uint16_t>(20, 30), 0);
  EXPECT_EQ(renderDepth(emptyBelt(), cameraAbove(0.4), effects).at<std::uint16_t>(20, 30), 0);
}

// The pixels as points of the world lie on the belt or on the box's surface.
TEST(SceneDepth, PointsComeBackToTheirSurfaces) {
  const Scene scene = withBox({40, -30, 0}, {120, 90, 150}, 25);
  SceneCamera camera = cameraAt(lookingDown({120, 20, 900}, -12));
  camera.model.distortion.coeffs[0] = -0.1;
  DepthEffects effects;
  effects.step = 1.0 / 64;
  const PointCloud cloud =
      pointsFromDepth(renderDepth(scene, camera, effects), camera.model, effects.step);
  ASSERT_EQ(cloud.points.size(), 61U * 41U);
  const double c = std::cos(25 * CV_PI / 180), s = std::sin(25 * CV_PI / 180);
  int onBox = 0;
  for (const auto& point : cloud.points) {
    const cv::Vec4d world = camera.worldFromCam * cv::Vec4d(point.x, point.y, point.z, 1);
    if (std::abs(world[2]) < 0.02) continue;
    // In the box's own frame, how far outside of it.
    const double dx = world[0] - 40, dy = world[1] + 30;
    const cv::Vec3d outside(std::abs(c * dx + s * dy) - 60, std::abs(c * dy - s * dx) - 45,
                            std::abs(world[2] - 75) - 75);
    EXPECT_NEAR(std::max({outside[0], outside[1], outside[2]}), 0, 0.02);
    ++onBox;
  }
  EXPECT_GT(onBox, 100);
}

TEST(SceneDepth, NoiseHasItsStandardDeviation) {
  DepthEffects effects;
  effects.step = 0.01;
  effects.noiseSigma = 2.5;
  effects.seed = 7;
  SceneCamera camera = cameraAbove(400);
  camera.model.imageSize = {300, 200};
  Scene scene = emptyBelt();
  scene.belt.width = scene.belt.length = 1e5;
  cv::Scalar mean, deviation;
  cv::meanStdDev(renderDepth(scene, camera, effects), mean, deviation);
  // Standard errors over 60000 pixels: 0.010 and 0.007.
  EXPECT_NEAR(mean[0] * effects.step, 400, 0.05);
  EXPECT_NEAR(deviation[0] * effects.step, 2.5, 0.035);
}

TEST(SceneDepth, HolesHaveTheirShare) {
  DepthEffects effects;
  effects.holeShare = 0.1;
  effects.seed = 7;
  SceneCamera camera = cameraAbove(400);
  camera.model.imageSize = {300, 200};
  Scene scene = emptyBelt();
  scene.belt.width = scene.belt.length = 1e5;
  const cv::Mat depth = renderDepth(scene, camera, effects);
  EXPECT_NEAR(missing(depth), 6000, 370); // five standard deviations
  EXPECT_EQ(cv::countNonZero(depth == 400) + missing(depth), 60000);

  effects.holeShare = 1;
  EXPECT_EQ(missing(renderDepth(scene, camera, effects)), 60000);
}

// The box covers 11 x 7 pixels: its outline inside has 32, the one around it, without the
// diagonals, 36.
TEST(SceneDepth, StepsDropOut) {
  const Scene scene = withBox({0, 0, 0}, {80.1, 48.1, 200});
  DepthEffects effects;
  effects.edgeHeight = 199;
  const cv::Mat depth = renderDepth(scene, cameraAbove(1000), effects);
  EXPECT_EQ(missing(depth), 32 + 36);
  EXPECT_EQ(depth.at<std::uint16_t>(20, 25), 0);   // the box's outermost column
  EXPECT_EQ(depth.at<std::uint16_t>(20, 24), 0);   // the belt next to it
  EXPECT_EQ(depth.at<std::uint16_t>(20, 26), 800); // one further in
  EXPECT_EQ(depth.at<std::uint16_t>(20, 23), 1000);
  EXPECT_EQ(depth.at<std::uint16_t>(16, 24), 1000); // diagonally off the corner

  effects.edgeHeight = 200; // the step is not more than that
  EXPECT_EQ(missing(renderDepth(scene, cameraAbove(1000), effects)), 0);
}

TEST(SceneDepth, SeedDecides) {
  const Scene scene = withBox({0, 0, 0}, {80, 48, 200});
  DepthEffects effects;
  effects.noiseSigma = 2;
  effects.holeShare = 0.05;
  const cv::Mat first = renderDepth(scene, cameraAbove(1000), effects);
  EXPECT_TRUE(isSame(first, renderDepth(scene, cameraAbove(1000), effects)));
  effects.seed = 2;
  EXPECT_FALSE(isSame(first, renderDepth(scene, cameraAbove(1000), effects)));
}

// Switching the noise off leaves the holes where they are.
TEST(SceneDepth, EffectsDoNotDisturbEachOther) {
  DepthEffects effects;
  effects.holeShare = 0.05;
  const cv::Mat quiet = renderDepth(emptyBelt(), cameraAbove(1000), effects);
  effects.noiseSigma = 3;
  const cv::Mat noisy = renderDepth(emptyBelt(), cameraAbove(1000), effects);
  EXPECT_TRUE(isSame(quiet == 0, noisy == 0));
  EXPECT_FALSE(isSame(quiet, noisy));
}

TEST(SceneColor, ColoursByHand) {
  Scene scene = withBox({0, 0, 0}, {80.1, 48.1, 200});
  scene.belt.color = {90, 91, 92};
  cv::Mat expected(41, 61, CV_8UC3, cv::Scalar(90, 91, 92));
  expected(cv::Rect(25, 17, 11, 7)) = cv::Scalar(200, 100, 50);
  EXPECT_TRUE(isSame(renderColor(scene, cameraAbove(1000)), expected));
}

// One colour image pixel, one depth pixel: the box is where the depth has it.
TEST(SceneColor, LiesOnTheDepthImage) {
  const Scene scene = withBox({40, -30, 0}, {120, 90, 150}, 25);
  const SceneCamera camera = cameraAbove(900);
  cv::Mat channels[3];
  cv::split(renderColor(scene, camera), channels);
  const cv::Mat onBelt = renderDepth(scene, camera) == 900;
  EXPECT_TRUE(isSame(onBelt, channels[0] == 110));
}

// A belt that ends in the middle of the pixel column 40 and of the row 10: half of the rays there
// see the background, at the corner three quarters.
TEST(SceneColor, SubpixelsAreAveraged) {
  Scene scene = emptyBelt();
  scene.belt.length = 200;
  scene.belt.width = 200;
  scene.belt.color = {100, 50, 20};
  ColorEffects effects;
  effects.subpixels = 2;
  const cv::Mat image = renderColor(scene, cameraAbove(1000), effects);
  EXPECT_EQ(image.at<cv::Vec3b>(20, 39), cv::Vec3b(100, 50, 20));
  EXPECT_EQ(image.at<cv::Vec3b>(20, 40), cv::Vec3b(50, 25, 10));
  EXPECT_EQ(image.at<cv::Vec3b>(10, 30), cv::Vec3b(50, 25, 10));
  EXPECT_EQ(image.at<cv::Vec3b>(10, 40), cv::Vec3b(25, 12, 5));
  EXPECT_EQ(image.at<cv::Vec3b>(20, 41), cv::Vec3b(0, 0, 0));
}

TEST(SceneColor, NoiseHasItsStandardDeviationAndSeed) {
  ColorEffects effects;
  effects.noiseSigma = 4;
  SceneCamera camera = cameraAbove(1000);
  camera.model.imageSize = {150, 100};
  const cv::Mat image = renderColor(emptyBelt(), camera, effects);
  cv::Scalar mean, deviation;
  cv::meanStdDev(image, mean, deviation);
  for (int channel = 0; channel < 3; ++channel) {
    // Standard errors over 15000 pixels: 0.033 and 0.023. Rounding adds 1/12 to the variance.
    EXPECT_NEAR(mean[channel], 110, 0.17);
    EXPECT_NEAR(deviation[channel], std::sqrt(16 + 1.0 / 12), 0.12);
  }
  EXPECT_TRUE(isSame(image, renderColor(emptyBelt(), camera, effects)));
  effects.seed = 2;
  EXPECT_FALSE(isSame(image, renderColor(emptyBelt(), camera, effects)));
}

} // namespace
} // namespace velmorn::tool
