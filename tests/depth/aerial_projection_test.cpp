// The projection's kernels: which sample a cell shows, and the bytes of whole scenes.
#include "depth/aerial_projection.h"

#include <limits>

#include <gtest/gtest.h>

#include "depth/aerial_scenes.h"
#include "depth/plain_aerial_view.h"

namespace velmorn {
namespace {

// One camera that looks at the plane x = u d, y = v d, region 0 < x, y < 100, resolution 10.
struct HandScene : AerialScene {
  explicit HandScene(int width) {
    depths.push_back(cv::Mat::zeros(1, width, CV_16UC1));
    colors.push_back(cv::Mat::zeros(1, width, CV_8UC3));
    intrinsics.push_back(intrinsicOf(1, 0, 1, -1)); // row 0 is at y = d
    extrinsics.emplace_back();
    region = {0, 0, 100, 100};
    resolution = 10;
  }
  void sample(int u, unsigned short depth, unsigned char shade) {
    depths[0].at<std::uint16_t>(0, u) = depth;
    colors[0].at<cv::Vec3b>(0, u) = cv::Vec3b(shade, 2, 3);
  }
};

cv::Mat colored(const AerialScene& s) {
  cv::Mat image;
  EXPECT_EQ(projectDepthToAerialWithColor(s.depths.data(), s.colors.data(), s.intrinsics.data(),
                                          s.extrinsics.data(), s.cameraCount(), &s.region,
                                          s.resolution, &image),
            kOzkSuccess);
  return image;
}

cv::Mat falseColored(const AerialScene& s) {
  cv::Mat image;
  EXPECT_EQ(projectDepthToAerial(s.depths.data(), s.intrinsics.data(), s.extrinsics.data(),
                                 s.cameraCount(), &s.region, s.resolution, &image),
            kOzkSuccess);
  return image;
}

void expectPlainBytes(const AerialScene& s) {
  const cv::Mat withColor =
      plainAerialView(s.depths.data(), s.colors.data(), s.intrinsics.data(), s.extrinsics.data(),
                      s.cameraCount(), s.region, s.resolution);
  const cv::Mat withoutColor =
      plainAerialView(s.depths.data(), nullptr, s.intrinsics.data(), s.extrinsics.data(),
                      s.cameraCount(), s.region, s.resolution);
  EXPECT_TRUE(haveEqualBytes(colored(s), withColor));
  EXPECT_TRUE(haveEqualBytes(falseColored(s), withoutColor));
}

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

TEST(AerialProjection, FloorScenesHaveThePlainBytes) {
  for (int k = 1; k <= 4; ++k) {
    AerialScene scene = floorScene(k, 160 + k, 120, 0.05, static_cast<unsigned>(k));
    for (const float resolution : {1.3F, 7.0F, 40.0F, 1e9F}) {
      scene.region = {-400, -300, 500, 420};
      scene.resolution = resolution;
      expectPlainBytes(scene);
    }
  }
}

} // namespace
} // namespace velmorn
