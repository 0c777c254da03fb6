// The projection's kernels: which sample a cell shows, and where the picture goes.
#include "depth/aerial_projection.h"

#include <gtest/gtest.h>

#include "depth/aerial_pictures.h"
#include "depth/aerial_scenes.h"

namespace velmorn {
namespace {

TEST(AerialProjection, SampleFallsIntoItsCell) {
  HandScene scene(3);
  scene.sample(2, 25, 7); // x = 50, y = 25
  const cv::Mat image = colored(scene);
  ASSERT_EQ(image.size(), cv::Size(11, 11));
  EXPECT_EQ(image.at<cv::Vec3b>(2, 5), cv::Vec3b(7, 2, 3));
  EXPECT_EQ(cv::countNonZero(image.reshape(1)), 3);
}

TEST(AerialProjection, BorderIsLeftOut) {
  HandScene scene(5);
  scene.sample(0, 50, 1);  // x = 0
  scene.sample(4, 25, 2);  // x = 100
  scene.sample(1, 100, 3); // y = 100
  EXPECT_EQ(cv::countNonZero(colored(scene).reshape(1)), 0);
  EXPECT_EQ(cv::countNonZero(falseColored(scene).reshape(1)), 0);
  scene.sample(1, 99, 3);
  EXPECT_EQ(colored(scene).at<cv::Vec3b>(9, 9), cv::Vec3b(3, 2, 3));
}

TEST(AerialProjection, NearestSampleWinsAndTheFirstOfEquals) {
  HandScene scene(4);
  scene.intrinsics[0] = intrinsicOf(1000, -500, 1000, -500); // all within one cell
  scene.sample(0, 12, 1);
  scene.sample(1, 11, 2);
  scene.sample(2, 11, 3);
  scene.sample(3, 13, 4);
  EXPECT_EQ(colored(scene).at<cv::Vec3b>(0, 0), cv::Vec3b(2, 2, 3));
}

TEST(AerialProjection, DepthsAreShownFromNearToFar) {
  HandScene scene(3);
  scene.sample(1, 20, 0);
  scene.sample(2, 30, 0);
  const cv::Mat image = falseColored(scene);
  EXPECT_EQ(image.at<cv::Vec3b>(2, 2), cv::Vec3b(127, 254, 128));
  EXPECT_EQ(image.at<cv::Vec3b>(3, 6), cv::Vec3b(255, 0, 0));
  EXPECT_EQ(cv::countNonZero(image.reshape(1)), 4);
}

TEST(AerialProjection, ReversedRegionHasNoSamples) {
  AerialScene scene = floorScene(1, 50, 9, 0, 3);
  scene.region = {2, 2, 0.5F, 1.5F}; // one column less than none, one row
  scene.resolution = 1;
  EXPECT_EQ(colored(scene).cols, 0);
  EXPECT_EQ(falseColored(scene).rows, 1);
  scene.resolution = 2;
  EXPECT_EQ(colored(scene).size(), cv::Size(1, 1));
  EXPECT_EQ(cv::countNonZero(colored(scene).reshape(1)), 0);
}

TEST(AerialProjection, SampleOf65535IsNeverShown) {
  HandScene scene(1);
  scene.intrinsics[0] = intrinsicOf(65535, -10, 65535, -10);
  scene.sample(0, 65535, 9);
  EXPECT_EQ(cv::countNonZero(colored(scene).reshape(1)), 0);
  scene.sample(0, 65534, 9);
  EXPECT_EQ(cv::countNonZero(colored(scene).reshape(1)), 3);
}

// A flat scene at one depth, seen by a camera that stands 50 to the right and 20 below and is
// turned by a right angle: its sample shows up where firstFromCam puts it.
TEST(AerialProjection, SecondCameraIsMovedIntoTheFirst) {
  HandScene scene(1);
  scene.depths.push_back(cv::Mat(1, 1, CV_16UC1, cv::Scalar(30)));
  scene.colors.push_back(cv::Mat(1, 1, CV_8UC3, cv::Scalar(4, 5, 6)));
  scene.intrinsics.push_back(intrinsicOf(1, -1, 1, 0)); // x = 30, y = 0
  scene.extrinsics.push_back({{0, -1, 0, 50, 1, 0, 0, 20, 9, 9, 9, 9, 9, 9, 9, 9}});
  const cv::Mat image = colored(scene); // at 50, 50
  EXPECT_EQ(image.at<cv::Vec3b>(5, 5), cv::Vec3b(4, 5, 6));
  EXPECT_EQ(cv::countNonZero(image.reshape(1)), 3);
}

TEST(AerialProjection, InputsWithGapsBetweenRows) {
  AerialScene scene = floorScene(2, 61, 20, 0.1, 3);
  scene.region = {-500, -500, 500, 500};
  scene.resolution = 9;
  const cv::Mat expected = colored(scene);
  for (std::size_t k = 0; k < 2; ++k) {
    cv::Mat depth(25, 90, CV_16UC1, cv::Scalar(700)), color(30, 80, CV_8UC3, cv::Scalar(1, 2, 3));
    scene.depths[k].copyTo(depth(cv::Rect(7, 2, 61, 20)));
    scene.colors[k].copyTo(color(cv::Rect(5, 3, 61, 20)));
    scene.depths[k] = depth(cv::Rect(7, 2, 61, 20));
    scene.colors[k] = color(cv::Rect(5, 3, 70, 25)); // larger than the depth image
  }
  EXPECT_TRUE(haveEqualBytes(colored(scene), expected));
}

TEST(AerialProjection, OutputKeepsItsPlaceWhenItFits) {
  AerialScene scene = floorScene(1, 61, 20, 0.1, 3);
  scene.region = {-500, -500, 500, 500};
  scene.resolution = 50; // 21 by 21
  const cv::Mat expected = colored(scene);
  cv::Mat canvas(40, 40, CV_8UC3, cv::Scalar(9, 9, 9));
  cv::Mat image = canvas(cv::Rect(3, 4, 21, 21));
  ASSERT_EQ(
      projectDepthToAerialWithColor(scene.depths.data(), scene.colors.data(),
                                    scene.intrinsics.data(), nullptr, 1, &scene.region, 50, &image),
      kOzkSuccess);
  EXPECT_TRUE(haveEqualBytes(canvas(cv::Rect(3, 4, 21, 21)), expected));
  canvas(cv::Rect(3, 4, 21, 21)).setTo(cv::Scalar(9, 9, 9));
  EXPECT_EQ(cv::norm(canvas, cv::Mat(40, 40, CV_8UC3, cv::Scalar(9, 9, 9))), 0);
}

TEST(AerialProjection, OutputMayBeAnInput) {
  AerialScene scene = floorScene(1, 21, 21, 0.1, 3);
  scene.region = {-500, -500, 500, 500};
  scene.resolution = 50;
  const cv::Mat withColor = colored(scene), withoutColor = falseColored(scene);
  const tagOzKCamIntrinsic* intrinsics = scene.intrinsics.data();

  cv::Mat color = scene.colors[0].clone();
  ASSERT_EQ(projectDepthToAerialWithColor(scene.depths.data(), &color, intrinsics, nullptr, 1,
                                          &scene.region, 50, &color),
            kOzkSuccess);
  EXPECT_TRUE(haveEqualBytes(color, withColor));
  cv::Mat depth = scene.depths[0].clone();
  ASSERT_EQ(projectDepthToAerial(&depth, intrinsics, nullptr, 1, &scene.region, 50, &depth),
            kOzkSuccess);
  EXPECT_TRUE(haveEqualBytes(depth, withoutColor));
}

} // namespace
} // namespace velmorn
