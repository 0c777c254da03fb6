// The frame that the rig is looked at in, worked out by hand.
#include "velmorn/report_frame.h"

#include <gmock/gmock.h>

#include <cmath>

#include "tools/record_sample.h"

namespace velmorn::tool {
namespace {

// Turned about its y axis, so that it looks towards (sin, 0, cos).
CameraRecord lookingTo(const std::string& id, const std::string& parent, double degrees) {
  CameraRecord camera = cameraAt(id, parent, {});
  const double s = std::sin(degrees * CV_PI / 180);
  const double c = std::cos(degrees * CV_PI / 180);
  camera.baseFromCam = cv::Matx44d(c, 0, s, 0, 0, 1, 0, 0, -s, 0, c, 0, 0, 0, 0, 1);
  return camera;
}

cv::Vec3d upOf(const std::vector<CameraRecord>& cameras) {
  StitchRecord record = twoCameraRecord();
  record.cameras = cameras;
  return upDirection(reportModel(record));
}

TEST(ReportFrame, HasUpAgainstTheMeanLineOfSight) {
  EXPECT_LT(
      cv::norm(upOf({cameraAt("a", "", {}), cameraAt("b", "a", {9, 9, 9})}) - cv::Vec3d(0, 0, -1)),
      1e-12);
  const double half = std::sqrt(0.5);
  EXPECT_LT(
      cv::norm(upOf({lookingTo("a", "", 0), lookingTo("b", "a", 90)}) - cv::Vec3d(-half, 0, -half)),
      1e-12);
}

TEST(ReportFrame, HasUpAgainstTheImagesWhereCamerasStandAround) {
  EXPECT_LT(
      cv::norm(upOf({lookingTo("a", "", 0), lookingTo("b", "a", 120), lookingTo("c", "a", 240)}) -
               cv::Vec3d(0, -1, 0)),
      1e-12);
}

TEST(ReportFrame, HasAnUpForAnyCameras) {
  CameraRecord upsideDown = lookingTo("b", "a", 180);
  for (int i = 0; i < 3; ++i) (*upsideDown.baseFromCam)(i, 1) *= -1;
  EXPECT_EQ(upOf({lookingTo("a", "", 0), upsideDown}), cv::Vec3d(0, -1, 0));
  EXPECT_EQ(upOf({}), cv::Vec3d(0, -1, 0));
}

// Two cameras 300 apart that look along z: x stays, up is -z and towards the viewer is y.
TEST(ReportFrame, MeasuresTheRig) {
  const ReportFrame frame = reportFrame(reportModel(twoCameraRecord()), {});
  EXPECT_EQ(frame.viewFromBase, cv::Matx33d(1, 0, 0, 0, 0, -1, 0, 1, 0));
  EXPECT_DOUBLE_EQ(frame.frustumDepth, 42); // 0.14 of the diagonal of 300
  EXPECT_DOUBLE_EQ(frame.cell, 50);         // 300 / 12 = 25
  EXPECT_LT(cv::norm(frame.least - cv::Vec3d(-0.577 * 42, -42, -0.433 * 42)), 1e-9);
  EXPECT_LT(cv::norm(frame.most - cv::Vec3d(300 + 0.577 * 42, 0, 0.433 * 42)), 1e-9);
}

TEST(ReportFrame, DrawsFrustaSmallerThanTheDistanceOfNeighbours) {
  StitchRecord record = twoCameraRecord();
  record.cameras.push_back(cameraAt("near", "left", {20, 0, 0}));
  EXPECT_DOUBLE_EQ(reportFrame(reportModel(record), {}).frustumDepth, 16);
  record.cameras.push_back(cameraAt("same", "left", {20, 0, 0}));
  EXPECT_DOUBLE_EQ(reportFrame(reportModel(record), {}).frustumDepth, 12);
}

TEST(ReportFrame, LeavesTheCloudsOutermostPointsOut) {
  ColouredCloud cloud;
  for (int i = 0; i <= 1000; ++i) cloud.points.emplace_back(0.F, 0.F, static_cast<float>(i));
  cloud.points.front()[2] = -1e6F;
  cloud.points.back()[2] = 1e6F;
  const ReportFrame frame = reportFrame(reportModel(twoCameraRecord()), cloud);
  EXPECT_DOUBLE_EQ(frame.least[1], -990); // z, upside down
}

TEST(ReportFrame, HasMeasuresForASingleCamera) {
  StitchRecord record = twoCameraRecord();
  record.cameras.pop_back();
  const ReportFrame frame = reportFrame(reportModel(record), {});
  EXPECT_GT(frame.cell, 0);
  EXPECT_GT(frame.frustumDepth, 0);
}

} // namespace
} // namespace velmorn::tool
