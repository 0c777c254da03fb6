// One camera's points: place, colour and index by hand.
#include "velmorn/camera_cloud.h"

#include <gtest/gtest.h>

#include <set>
#include <tuple>

namespace velmorn::tool {
namespace {

// Two samples, at (0, 0, 100) and (1, 1, 100), in a frame turned by a quarter turn about z.
CloudCamera camera() {
  CloudCamera camera;
  camera.view.counts = cv::Mat(2, 2, CV_16UC1, cv::Scalar(0));
  camera.view.counts.at<std::uint16_t>(0, 0) = 100;
  camera.view.counts.at<std::uint16_t>(1, 1) = 100;
  camera.view.model.intrinsic = {{100, 0, 0, 0, 100, 0, 0, 0, 1}};
  camera.index = 3;
  camera.frameFromCam = cv::Matx44d(0, -1, 0, 10, 1, 0, 0, 20, 0, 0, 1, 30, 0, 0, 0, 1);
  return camera;
}

std::vector<CloudPoint> pointsOf(const CloudCamera& camera) {
  std::vector<CloudPoint> points;
  const std::size_t number = liftCamera(camera, [&](const std::vector<CloudPoint>& row) {
    points.insert(points.end(), row.begin(), row.end());
  });
  EXPECT_EQ(number, points.size());
  return points;
}

TEST(CameraCloud, PlacesPointsInTheFrame) {
  const std::vector<CloudPoint> points = pointsOf(camera());
  ASSERT_EQ(points.size(), 2U);
  EXPECT_EQ(points[0].position, cv::Vec3f(10, 20, 130));
  EXPECT_EQ(points[1].position, cv::Vec3f(9, 21, 130));
  EXPECT_EQ(points[1].camera, 3);
}

TEST(CameraCloud, TakesThePixelsColours) {
  CloudCamera coloured = camera();
  coloured.colour = cv::Mat(2, 2, CV_8UC3, cv::Scalar(1, 2, 3));
  coloured.colour.at<cv::Vec3b>(1, 1) = {40, 50, 60};
  const std::vector<CloudPoint> points = pointsOf(coloured);
  EXPECT_EQ(points[0].colour, cv::Vec3b(1, 2, 3));
  EXPECT_EQ(points[1].colour, cv::Vec3b(40, 50, 60));
}

TEST(CameraCloud, HasTheCamerasColourWithoutAnImage) {
  EXPECT_EQ(pointsOf(camera())[0].colour, cameraColour(3));
  EXPECT_EQ(cameraColour(0), cv::Vec3b(0, 159, 230));  // orange
  EXPECT_EQ(cameraColour(1), cv::Vec3b(233, 180, 86)); // sky blue
}

TEST(CameraCloud, ColoursOfTenCamerasDiffer) {
  std::set<std::tuple<int, int, int>> colours;
  for (std::size_t i = 0; i < 10; ++i) {
    const cv::Vec3b colour = cameraColour(i);
    colours.insert({colour[0], colour[1], colour[2]});
  }
  EXPECT_EQ(colours.size(), 10U);
}

TEST(CameraCloud, LeavesOutWhatSinglePrecisionDoesNotHold) {
  CloudCamera far = camera();
  far.view.unit = 3e38;
  EXPECT_TRUE(pointsOf(far).empty());
}

} // namespace
} // namespace velmorn::tool
