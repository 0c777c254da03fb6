#include "geometry/aerial_adjustment.h"

#include <climits>
#include <cmath>

#include <gtest/gtest.h>

#include "geometry/extrinsics.h"

namespace velmorn {
namespace {

// With the camera's x and y axes along these shares of the frame's x axis.
tagOzKCamExtrinsic frameWith(double r00, double r01) {
  return {{r00, r01, 0, 100, 0, 0, 0, 200, 0, 0, 1, 300, 0, 0, 0, 1}};
}

cv::Vec3d moved(double r00, double r01, int mode) {
  tagOzKCamExtrinsic extrinsic = frameWith(r00, r01);
  EXPECT_EQ(adjustExtrinsicOnAerialImg(&extrinsic, 2.5F, 90, mode), kOzkSuccess);
  return shiftOf(extrinsic) - cv::Vec3d(100, 200, 300);
}

struct Row {
  double r00, r01;
  cv::Vec2d byMode[4];
};

// Modes 1 and 2 move across to modes 3 and 4.
TEST(AerialAdjustment, EveryModeInEveryPosition) {
  const Row rows[] = {{0.9, 0.1, {{0, 2.5}, {0, -2.5}, {2.5, 0}, {-2.5, 0}}},
                      {-0.9, 0.1, {{0, -2.5}, {0, 2.5}, {-2.5, 0}, {2.5, 0}}},
                      {0.1, 0.9, {{2.5, 0}, {-2.5, 0}, {0, -2.5}, {0, 2.5}}},
                      {0.1, -0.9, {{-2.5, 0}, {2.5, 0}, {0, 2.5}, {0, -2.5}}},
                      {0.5, 0.5, {{2.5, 0}, {-2.5, 0}, {0, -2.5}, {0, 2.5}}},
                      {0, 0, {{-2.5, 0}, {2.5, 0}, {0, 2.5}, {0, -2.5}}}};
  for (const Row& row : rows)
    for (int mode = 1; mode <= 4; ++mode) {
      const cv::Vec2d& expected = row.byMode[mode - 1];
      EXPECT_EQ(moved(row.r00, row.r01, mode), cv::Vec3d(expected[0], expected[1], 0))
          << row.r00 << " " << row.r01 << " mode " << mode;
    }
}

TEST(AerialAdjustment, MovingLeavesTheRotation) {
  tagOzKCamExtrinsic extrinsic = tiltedPlaneFromCam(500, {0.2, -0.1, 0.4});
  const cv::Matx33d before = rotationOf(extrinsic);
  adjustExtrinsicOnAerialImg(&extrinsic, 3, 10, 3);
  EXPECT_EQ(rotationOf(extrinsic), before);
}

TEST(AerialAdjustment, OtherModesDoNothing) {
  for (const int mode : {0, 7, -1, INT_MAX, INT_MIN}) {
    tagOzKCamExtrinsic extrinsic = foreignExtrinsic();
    EXPECT_EQ(adjustExtrinsicOnAerialImg(&extrinsic, 3, 10, mode), kOzkSuccess);
    EXPECT_TRUE(untouched(extrinsic));
  }
}

TEST(AerialAdjustment, NullExtrinsic) {
  for (const int mode : {0, 1, 5})
    EXPECT_EQ(adjustExtrinsicOnAerialImg(nullptr, 3, 10, mode), -1110);
}

TEST(AerialAdjustment, TurnsByHandForAStraightView) {
  tagOzKCamExtrinsic extrinsic = identityExtrinsic();
  extrinsic.data[3] = 12;
  extrinsic.data[12] = 77; // not a proper last row: left as it is
  ASSERT_EQ(adjustExtrinsicOnAerialImg(&extrinsic, 3, 90, 5), kOzkSuccess);
  expectElements(extrinsic, {{0, -1, 0, 12, 1, 0, 0, 0, 0, 0, 1, 0, 77, 0, 0, 1}}, 1e-6);
  ASSERT_EQ(adjustExtrinsicOnAerialImg(&extrinsic, 3, 90, 6), kOzkSuccess);
  expectElements(extrinsic, {{1, 0, 0, 12, 0, 1, 0, 0, 0, 0, 1, 0, 77, 0, 0, 1}}, 1e-6);
}

// Half a turn misses by the digits that pi is cut off after.
TEST(RotateExtrinsicAboutPlaneNormal, PiIsTruncated) {
  tagOzKCamExtrinsic extrinsic = identityExtrinsic();
  rotateExtrinsicAboutPlaneNormal(&extrinsic, 180);
  EXPECT_NEAR(extrinsic.data[4], std::sin(static_cast<double>(3.141592F)), 1e-12);
  EXPECT_GT(extrinsic.data[4], 5e-7); // sin 3.141592 = 6.5e-7
}

TEST(RotateExtrinsicAboutPlaneNormal, AngleIsRoundedToFloat) {
  tagOzKCamExtrinsic extrinsic = identityExtrinsic();
  rotateExtrinsicAboutPlaneNormal(&extrinsic, 7.3F);
  const float theta = static_cast<float>(static_cast<double>(7.3F / 180.0F) * 3.141592);
  EXPECT_NEAR(extrinsic.data[0], std::cos(static_cast<double>(theta)), 1e-15);
  EXPECT_NEAR(extrinsic.data[4], std::sin(static_cast<double>(theta)), 1e-15);
}

// The axis is the normal in camera coordinates, the turn acts on the plane's side: for a tilted
// view the normal does not stay where it was.
TEST(RotateExtrinsicAboutPlaneNormal, TiltedViewTurnsOnThePlanesSide) {
  tagOzKCamExtrinsic extrinsic = tiltedPlaneFromCam(500, {0.3, 0, 0});
  const cv::Matx33d R = rotationOf(extrinsic);
  const double theta = static_cast<double>(static_cast<float>(0.25 * 3.141592));
  cv::Matx33d Q;
  cv::Rodrigues(cv::Vec3d(theta * R(2, 0), theta * R(2, 1), theta * R(2, 2)), Q);
  rotateExtrinsicAboutPlaneNormal(&extrinsic, 45);
  EXPECT_LT(cv::norm(rotationOf(extrinsic) - Q * R), 1e-14);
  EXPECT_GT(cv::norm(rotationOf(extrinsic) - R * Q), 0.1);
  EXPECT_GT(std::abs(extrinsic.data[8] - R(2, 0)), 0.1);
  EXPECT_EQ(shiftOf(extrinsic), cv::Vec3d(12, -7, 500));
}

TEST(AerialAdjustment, OddNumbersDoNotCrash) {
  for (int mode = 1; mode <= 6; ++mode) {
    tagOzKCamExtrinsic extrinsic = foreignExtrinsic();
    EXPECT_EQ(adjustExtrinsicOnAerialImg(&extrinsic, HUGE_VALF, std::nanf(""), mode), kOzkSuccess);
    extrinsic = identityExtrinsic();
    extrinsic.data[10] = std::nan("");
    EXPECT_EQ(adjustExtrinsicOnAerialImg(&extrinsic, 1, HUGE_VALF, mode), kOzkSuccess);
  }
}

} // namespace
} // namespace velmorn
