#include <cmath>
#include <iomanip>

#include <gtest/gtest.h>

#include "geometry/extrinsics.h"
#include "geometry/spoken.h"

namespace velmorn {
namespace {

// A region of 200 x 100 around the optical axis, one pixel per unit.
constexpr tagOzKRect2Df32 kRegion{-100, -50, 100, 50};

struct Call {
  tagOzKPoint2Df32 p1{110, 60}, p2{160, 60};
  tagOzKCamExtrinsic refPlane = straightPlaneFromCam(500);
  tagOzKCamExtrinsic platform = foreignExtrinsic();
  Spoken spoken{};

  int run(tagOzKCamExtrinsic* out) {
    int status = 0;
    spoken = spokenBy(
        [&] { status = ozkCalCamAndPlatformExtrinsic(p1, p2, out, refPlane, kRegion, 200, 100); });
    return status;
  }
  int run() { return run(&platform); }
};

TEST(PlatformExtrinsic, StraightViewByHand) {
  Call call;
  ASSERT_EQ(call.run(), kOzkSuccess);
  // Origin at (10, 10, 500), axes along the camera's.
  expectElements(call.platform, {{1, 0, 0, -10, 0, 1, 0, -10, 0, 0, 1, -500, 0, 0, 0, 1}}, 0);
  EXPECT_EQ(call.spoken.stream + call.spoken.printf, "");
}

TEST(PlatformExtrinsic, XAxisRunsFromTheFirstPointToTheSecond) {
  Call call;
  call.p2 = {110, 30};
  ASSERT_EQ(call.run(), kOzkSuccess);
  expectElements(call.platform, {{0, -1, 0, 10, 1, 0, 0, -10, 0, 0, 1, -500, 0, 0, 0, 1}}, 0);
}

TEST(PlatformExtrinsic, TiltedPlaneHoldsOriginAndAxes) {
  Call call;
  call.refPlane = tiltedPlaneFromCam(500, {0.2, -0.1, 0.4});
  ASSERT_EQ(call.run(), kOzkSuccess);
  // Camera points of the two pixels, lifted onto the plane.
  cv::Vec3d points[2] = {{10, 10, 0}, {60, 10, 0}};
  const cv::Matx33d R = rotationOf(call.refPlane);
  for (cv::Vec3d& p : points)
    p[2] = -(p[0] * R(2, 0) + p[1] * R(2, 1) + call.refPlane.data[11]) / R(2, 2);
  const cv::Vec3d origin = apply(call.platform, points[0]);
  const cv::Vec3d second = apply(call.platform, points[1]);
  EXPECT_LT(cv::norm(origin), 1e-3);
  EXPECT_LT(cv::norm(second - cv::Vec3d(cv::norm(points[1] - points[0]), 0, 0)), 1e-3);
  EXPECT_GT(call.platform.data[10], 0); // z to positive camera z
  const cv::Matx33d axes = rotationOf(call.platform);
  EXPECT_NEAR(cv::determinant(cv::InputArray(axes)), 1, 1e-6);
}

TEST(PlatformExtrinsic, NormalOfEitherSignGivesPositiveZ) {
  Call call;
  for (int k = 8; k < 12; ++k) call.refPlane.data[k] = -call.refPlane.data[k];
  ASSERT_EQ(call.run(), kOzkSuccess);
  expectElements(call.platform, {{1, 0, 0, -10, 0, 1, 0, -10, 0, 0, 1, -500, 0, 0, 0, 1}}, 0);
}

TEST(PlatformExtrinsic, SteepPlaneSaysTheElement) {
  Call call;
  call.refPlane.data[10] = -9.999e-05;
  EXPECT_EQ(call.run(), kOzkComputationFailed);
  EXPECT_EQ(call.spoken.stream, "error:refPlaneExtrinsic.data[10] is -9.999e-05\n");
  EXPECT_EQ(call.spoken.printf, "");
  EXPECT_TRUE(untouched(call.platform));
}

// The stream's own form of a number, six digits at most, not that of "%f".
TEST(PlatformExtrinsic, ElementIsWrittenInTheStreamsForm) {
  Call call;
  call.refPlane.data[10] = 0.0000123456789;
  call.run();
  EXPECT_EQ(call.spoken.stream, "error:refPlaneExtrinsic.data[10] is 1.23457e-05\n");
  call.refPlane.data[10] = 0;
  const Spoken spoken = spokenBy([&] {
    std::cout << std::fixed << std::setprecision(2);
    ozkCalCamAndPlatformExtrinsic(call.p1, call.p2, &call.platform, call.refPlane, kRegion, 200,
                                  100);
    std::cout << std::defaultfloat << std::setprecision(6);
  });
  EXPECT_EQ(spoken.stream, "error:refPlaneExtrinsic.data[10] is 0\n");
}

TEST(PlatformExtrinsic, ElementAtTheLimitIsAccepted) {
  Call call;
  for (const double limit : {0.0001, -0.0001}) {
    call.refPlane.data[10] = limit;
    EXPECT_EQ(call.run(), kOzkSuccess);
  }
}

TEST(PlatformExtrinsic, EqualPointsHaveNoXAxis) {
  Call call;
  call.p2 = call.p1;
  EXPECT_EQ(call.run(), kOzkGeometryFailed2);
  EXPECT_EQ(call.spoken.stream, "error:the length of xAxis is zero\n");
  EXPECT_EQ(call.spoken.printf, "");
  EXPECT_TRUE(untouched(call.platform));
}

TEST(PlatformExtrinsic, NullOutputIsNoticedAfterTheGeometry) {
  Call call;
  EXPECT_EQ(call.run(nullptr), kOzkNullExtrinsic);
  EXPECT_EQ(call.spoken.stream, "");
  call.p2 = call.p1;
  EXPECT_EQ(call.run(nullptr), kOzkGeometryFailed2);
  call.refPlane.data[10] = 0;
  EXPECT_EQ(call.run(nullptr), kOzkComputationFailed);
}

TEST(PlatformExtrinsic, ValuesAreRoundedToFloat) {
  Call call;
  call.refPlane = tiltedPlaneFromCam(500, {0.2, -0.1, 0.4});
  ASSERT_EQ(call.run(), kOzkSuccess);
  for (const double element : call.platform.data)
    EXPECT_EQ(element, static_cast<double>(static_cast<float>(element)));
}

TEST(PlatformExtrinsic, OddNumbersDoNotCrash) {
  Call call;
  for (const double odd : {std::nan(""), HUGE_VAL}) {
    call.refPlane.data[10] = odd;
    EXPECT_EQ(call.run(), kOzkSuccess);
  }
  tagOzKCamExtrinsic out;
  EXPECT_EQ(
      ozkCalCamAndPlatformExtrinsic({1, 2}, {3, 4}, &out, straightPlaneFromCam(500), kRegion, 0, 0),
      kOzkSuccess);
}

} // namespace
} // namespace velmorn
