#include <cmath>

#include <gtest/gtest.h>

#include "geometry/extrinsics.h"
#include "geometry/spoken.h"

namespace velmorn {
namespace {

struct Call {
  tagOzKCamExtrinsic out = foreignExtrinsic();
  Spoken spoken{};

  int run(const tagOzKCamExtrinsic& ext, const tagOzKPoint3Df32& xAxis) {
    int status = 0;
    spoken = spokenBy([&] { status = changeExtrisicByNewXAxis(ext, xAxis, out); });
    return status;
  }
};

TEST(XAxisChange, IdentityByHand) {
  Call call;
  ASSERT_EQ(call.run(identityExtrinsic(), {0, 1, 0}), kOzkSuccess);
  expectElements(call.out, {{0, 1, 0, 0, -1, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}}, 0);
  EXPECT_EQ(call.spoken.stream + call.spoken.printf, "");
}

TEST(XAxisChange, OriginAndNormalStay) {
  const tagOzKCamExtrinsic before = tiltedPlaneFromCam(500, {0.2, -0.1, 0.4});
  const cv::Matx33d R = rotationOf(before);
  const cv::Vec3d inPlane = R.t() * cv::Vec3d(3, 4, 0); // camera coordinates, length 5
  Call call;
  ASSERT_EQ(call.run(before, {static_cast<float>(inPlane[0]), static_cast<float>(inPlane[1]),
                              static_cast<float>(inPlane[2])}),
            kOzkSuccess);
  const cv::Vec3d origin = -(R.t() * shiftOf(before));
  EXPECT_LT(cv::norm(apply(call.out, origin)), 1e-9);
  const cv::Vec3d onX = origin + inPlane;
  EXPECT_LT(cv::norm(apply(call.out, onX) - cv::Vec3d(5, 0, 0)), 1e-5);
  for (int k = 8; k < 11; ++k) EXPECT_EQ(call.out.data[k], before.data[k]);
  EXPECT_NEAR(cv::determinant(cv::InputArray(rotationOf(call.out))), 1, 1e-6);
}

// The new axes are as long as the sine of the angle between the direction and the normal.
TEST(XAxisChange, ObliqueDirectionGivesShortAxes) {
  Call call;
  ASSERT_EQ(call.run(identityExtrinsic(), {3, 0, 4}), kOzkSuccess);
  expectElements(call.out, {{0.6, 0, 0, 0, 0, 0.6, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}}, 1e-7);
}

TEST(XAxisChange, ShortDirection) {
  Call call;
  EXPECT_EQ(call.run(identityExtrinsic(), {0, 0, 0}), kOzkXAxisTooShort);
  EXPECT_EQ(call.run(identityExtrinsic(), {0, 0.00009F, 0}), 321);
  EXPECT_EQ(call.run(tagOzKCamExtrinsic{}, {0, 0, 0}), 321); // before the rotation is looked at
  EXPECT_EQ(call.spoken.stream + call.spoken.printf, "");
  EXPECT_TRUE(untouched(call.out));
  EXPECT_EQ(call.run(identityExtrinsic(), {0, 0.00011F, 0}), kOzkSuccess);
}

TEST(XAxisChange, RotationThatCannotBeInverted) {
  Call call;
  EXPECT_EQ(call.run(tagOzKCamExtrinsic{}, {0, 0, 1}), kOzkRotationNotInvertible);
  EXPECT_EQ(call.spoken.stream, "matrixInverse failed\n");
  EXPECT_EQ(call.spoken.printf, "");
  EXPECT_TRUE(untouched(call.out));
  EXPECT_EQ(kOzkRotationNotInvertible, 322);
}

TEST(XAxisChange, DirectionAlongTheNormal) {
  Call call;
  for (const float z : {1.0F, -70.0F})
    EXPECT_EQ(call.run(identityExtrinsic(), {0, 0, z}), kOzkXAxisAlongNormal);
  EXPECT_EQ(call.run(identityExtrinsic(), {0.00009F, 0, 1}), 323);
  EXPECT_EQ(call.spoken.stream + call.spoken.printf, "");
  EXPECT_TRUE(untouched(call.out));
}

TEST(XAxisChange, OutputMayBeTheInput) {
  tagOzKCamExtrinsic extrinsic = straightPlaneFromCam(500);
  ASSERT_EQ(changeExtrisicByNewXAxis(extrinsic, {1, 0, 0}, extrinsic), kOzkSuccess);
  expectElements(extrinsic, {{1, 0, 0, 0, 0, -1, 0, 0, 0, 0, -1, 500, 0, 0, 0, 1}}, 0);
}

TEST(XAxisChange, NotANumberIsPassedOn) {
  Call call;
  EXPECT_EQ(call.run(identityExtrinsic(), {std::nanf(""), 0, 0}), kOzkSuccess);
  EXPECT_TRUE(std::isnan(call.out.data[0]));
}

} // namespace
} // namespace velmorn
