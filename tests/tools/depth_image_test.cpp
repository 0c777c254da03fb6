// Point clouds from depth images: hand-worked pixels, and images of other kinds.
#include "velmorn/depth_image.h"

#include <gmock/gmock.h>

#include <opencv2/imgcodecs.hpp>

#include "support/temp_dir.h"
#include "tools/expect_tool_error.h"

namespace velmorn::tool {
namespace {

// f = 500 and 400, principal point (2, 1).
CameraModel camera() {
  CameraModel model;
  model.intrinsic = {{500, 0, 2, 0, 400, 1, 0, 0, 1}};
  return model;
}

TEST(DepthImage, LiftsPixelsByHand) {
  cv::Mat depth(3, 4, CV_16UC1, cv::Scalar(0));
  depth.at<std::uint16_t>(1, 2) = 1000;  // on the axis
  depth.at<std::uint16_t>(2, 3) = 65535; // one pixel right, one down
  const PointCloud cloud = pointsFromDepth(depth, camera(), 0.5);
  ASSERT_EQ(cloud.points.size(), 2U);
  EXPECT_EQ(cloud.skipped, 10U);
  EXPECT_EQ(cloud.points[0].x, 0.0F);
  EXPECT_EQ(cloud.points[0].y, 0.0F);
  EXPECT_EQ(cloud.points[0].z, 500.0F);
  EXPECT_FLOAT_EQ(cloud.points[1].x, 32767.5F / 500);
  EXPECT_FLOAT_EQ(cloud.points[1].y, 32767.5F / 400);
  EXPECT_EQ(cloud.points[1].z, 32767.5F);
}

// x'' = x (1 + k1 r^2) on the axis y = 0: x = 0.1, k1 = -1 gives x'' = 0.099.
TEST(DepthImage, TakesTheLensDistortionOut) {
  CameraModel distorted = camera();
  distorted.intrinsic.matrix[0] = 1000 / 0.99;
  distorted.intrinsic.matrix[2] = 0;
  distorted.distortion.coeffs[0] = -1;
  cv::Mat depth(2, 101, CV_16UC1, cv::Scalar(0));
  depth.at<std::uint16_t>(1, 100) = 1000;
  const PointCloud cloud = pointsFromDepth(depth, distorted, 1);
  ASSERT_EQ(cloud.points.size(), 1U);
  EXPECT_NEAR(cloud.points[0].x, 100, 1e-3);
  EXPECT_NEAR(cloud.points[0].y, 0, 1e-3);
}

class DepthImageFile : public TempDirTest {};

TEST_F(DepthImageFile, ReadsSixteenBits) {
  const cv::Mat written(3, 4, CV_16UC1, cv::Scalar(40000));
  for (const char* name : {"d.png", "d.tif"}) {
    cv::imwrite(name, written);
    EXPECT_EQ(cv::norm(readDepthImage(name), written, cv::NORM_INF), 0);
  }
}

TEST_F(DepthImageFile, RefusesOtherImages) {
  cv::imwrite("grey.png", cv::Mat(3, 4, CV_8UC1, cv::Scalar(9)));
  cv::imwrite("colour.png", cv::Mat(3, 4, CV_16UC3, cv::Scalar(9, 9, 9)));
  writeFile("text.png", "no image");
  for (const char* name : {"grey.png", "colour.png"}) {
    EXPECT_EQ(toolError([&] { readDepthImage(name); }),
              std::string(name) + ": not a depth image, which has one channel of 16 bits");
  }
  EXPECT_EQ(toolError([] { readDepthImage("text.png"); }), "text.png: not readable as an image");
}

} // namespace
} // namespace velmorn::tool
