#include <cmath>

#include <gtest/gtest.h>

#include "geometry/extrinsics.h"
#include "geometry/spoken.h"

namespace velmorn {
namespace {

constexpr tagOzKCamIntrinsic kCamera{{500, 0, 320, 0, 400, 240, 0, 0, 1}};

struct Call {
  tagOzKCamExtrinsic refPlane = straightPlaneFromCam(500);
  tagOzKPoint2Df32 p1{320, 240}, p2{370, 240}; // (0, 0, 500) and (50, 0, 500)
  tagOzKCamIntrinsic camera = kCamera;
  int direction = 0;
  tagOzKCamExtrinsic out = foreignExtrinsic();
  Spoken spoken{};

  int run(tagOzKCamExtrinsic* to) {
    int status = 0;
    spoken = spokenBy(
        [&] { status = calConveyorExtrinsicByImageLine(refPlane, p1, p2, camera, direction, to); });
    return status;
  }
  int run() { return run(&out); }
};

TEST(ConveyorExtrinsic, StraightViewByHand) {
  Call call;
  ASSERT_EQ(call.run(), kOzkSuccess);
  expectElements(call.out, {{1, 0, 0, 0, 0, -1, 0, 0, 0, 0, -1, 500, 0, 0, 0, 1}}, 1e-4);
  EXPECT_EQ(call.spoken.stream + call.spoken.printf, "");
}

TEST(ConveyorExtrinsic, BothFocalLengthsCount) {
  Call call;
  call.p1 = {370, 280}; // (50, 50, 500)
  call.p2 = {370, 320}; // (50, 100, 500)
  ASSERT_EQ(call.run(), kOzkSuccess);
  expectElements(call.out, {{0, 1, 0, -50, 1, 0, 0, -50, 0, 0, -1, 500, 0, 0, 0, 1}}, 1e-4);
}

TEST(ConveyorExtrinsic, DirectionPicksTheZAxis) {
  for (const double sign : {1.0, -1.0}) { // the reference plane's own normal
    Call call;
    for (int k = 8; k < 12; ++k) call.refPlane.data[k] *= sign;
    call.direction = 0;
    ASSERT_EQ(call.run(), kOzkSuccess);
    EXPECT_EQ(call.out.data[10], -1);
    call.direction = 1;
    ASSERT_EQ(call.run(), kOzkSuccess);
    EXPECT_EQ(call.out.data[10], 1);
    for (const int other : {2, -1}) {
      call.direction = other;
      ASSERT_EQ(call.run(), kOzkSuccess);
      EXPECT_EQ(call.out.data[10], -sign);
    }
  }
}

TEST(ConveyorExtrinsic, TiltedPlaneHoldsOriginAndAxes) {
  Call call;
  call.refPlane = tiltedPlaneFromCam(500, {0.2, -0.1, 0.4});
  call.p1 = {100, 400};
  call.p2 = {500, 90};
  ASSERT_EQ(call.run(), kOzkSuccess);
  const cv::Matx33d R = rotationOf(call.refPlane);
  const cv::Vec3d normal(R(2, 0), R(2, 1), R(2, 2));
  cv::Vec3d points[2];
  const tagOzKPoint2Df32 pixels[2] = {call.p1, call.p2};
  for (int i = 0; i < 2; ++i) {
    points[i] = {(static_cast<double>(pixels[i].x) - 320) / 500,
                 (static_cast<double>(pixels[i].y) - 240) / 400, 1};
    points[i] *= -call.refPlane.data[11] / normal.dot(points[i]);
  }
  EXPECT_LT(cv::norm(apply(call.out, points[0])), 1e-3);
  const double length = cv::norm(points[1] - points[0]);
  EXPECT_LT(cv::norm(apply(call.out, points[1]) - cv::Vec3d(length, 0, 0)), 1e-3);
  EXPECT_NEAR(cv::determinant(cv::InputArray(rotationOf(call.out))), 1, 1e-6);
}

TEST(ConveyorExtrinsic, LastRowIsTheReferencePlanes) {
  Call call;
  for (int k = 12; k < 16; ++k) call.refPlane.data[k] = k;
  ASSERT_EQ(call.run(), kOzkSuccess);
  for (int k = 12; k < 16; ++k) EXPECT_EQ(call.out.data[k], k);
}

TEST(ConveyorExtrinsic, EqualPixelsHaveNoXAxis) {
  Call call;
  call.p2 = call.p1;
  EXPECT_EQ(call.run(), kOzkGeometryFailed3);
  EXPECT_EQ(call.run(nullptr), kOzkGeometryFailed3);
  EXPECT_EQ(call.spoken.stream + call.spoken.printf, "");
  EXPECT_TRUE(untouched(call.out));
}

TEST(ConveyorExtrinsic, NullOutputIsNoticedAfterTheGeometry) {
  Call call;
  EXPECT_EQ(call.run(nullptr), kOzkNullPointer);
}

// The plane's normal stands in for the point that the first line of sight does not have.
TEST(ConveyorExtrinsic, LineOfSightAlongThePlaneGoesOnWithTheNormal) {
  Call call;
  // Normal (0.6, 0, -0.8): the ray (0.8, 0, 0.6), pixel 320 + 500 * 4 / 3, runs along the plane.
  call.refPlane = {{0.8, 0, 0.6, 0, 0, 1, 0, 0, 0.6, 0, -0.8, 400, 0, 0, 0, 1}};
  call.p1 = {320 + 2000.0F / 3, 240};
  call.p2 = {320, 240}; // (0, 0, 500)
  ASSERT_EQ(call.run(), kOzkSuccess);
  EXPECT_EQ(call.spoken.printf,
            "no intesection.line direction is (0.800000,0.000000,0.600000)."
            "plane normal is (0.600000,0.000000,-0.800000)\n");
  EXPECT_EQ(call.spoken.stream, "");
  const cv::Vec3d origin(0.6, 0, -0.8);
  EXPECT_LT(cv::norm(apply(call.out, origin)), 1e-9);
  EXPECT_NEAR(apply(call.out, {0, 0, 500})[0], cv::norm(cv::Vec3d(0, 0, 500) - origin), 1e-3);
}

TEST(ConveyorExtrinsic, TwoLinesOfSightAlongThePlaneCoincide) {
  Call call;
  call.refPlane = {{0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 0, 0, 0, 0, 0, 1}}; // plane x = 0
  call.p2 = {320, 300};
  EXPECT_EQ(call.run(), kOzkGeometryFailed3);
  EXPECT_EQ(std::count(call.spoken.printf.begin(), call.spoken.printf.end(), '\n'), 2);
  EXPECT_TRUE(untouched(call.out));
}

TEST(ConveyorExtrinsic, OddNumbersDoNotCrash) {
  Call call;
  call.camera = tagOzKCamIntrinsic{};
  EXPECT_EQ(call.run(), kOzkSuccess);
  EXPECT_TRUE(std::isnan(call.out.data[0]));
  call = Call{};
  call.refPlane = tagOzKCamExtrinsic{};
  EXPECT_EQ(call.run(), kOzkGeometryFailed3);
  call = Call{};
  call.p1.x = HUGE_VALF;
  EXPECT_EQ(call.run(), kOzkSuccess);
}

} // namespace
} // namespace velmorn
