// The size of a pixel and of the field at a distance.
#include <climits>
#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "velmorn64.h"

namespace velmorn {
namespace {

constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
constexpr float kInfinity = std::numeric_limits<float>::infinity();

// The tangent of half of 60 degrees as the C runtime gives it, which the compiler may round better.
float tangentOf30Degrees() {
  volatile float angle = static_cast<float>(static_cast<double>(60.0F / 180.0F) * 3.1415926);
  return std::tan(angle * 0.5F);
}

TEST(SampleFactor, SideOfOnePixelRoundedUp) {
  EXPECT_EQ(ozkCalDepthImgSampleFactor(60, 100, 1000), 12); // 11.547
  EXPECT_EQ(ozkCalDepthImgSampleFactor(60, 1155, 1000), 1); // 0.9998
  EXPECT_EQ(ozkCalDepthImgSampleFactor(60, 1154, 1000), 2); // 1.0006
  EXPECT_EQ(ozkCalDepthImgSampleFactor(60, 640, 0), 0);
}

TEST(SampleFactor, NegativeArgumentsAreRoundedUpToo) {
  EXPECT_EQ(ozkCalDepthImgSampleFactor(60, -100, 1000), -11);
  EXPECT_EQ(ozkCalDepthImgSampleFactor(60, 100, -1000), -11);
  EXPECT_EQ(ozkCalDepthImgSampleFactor(-60, 100, -1000), 12);
}

// With pi in full, half of 90 degrees had the tangent 1 and the side were -1.
TEST(SampleFactor, PiIsTruncated) { EXPECT_EQ(ozkCalDepthImgSampleFactor(90, 1000, -500), 0); }

// The pixel count is rounded to float: one more than 2^24 becomes 2^24.
TEST(SampleFactor, PixelCountIsSinglePrecision) {
  const float tangent = tangentOf30Degrees();
  const float distance = 16777216.0F / 2 / tangent;
  ASSERT_GE(tangent * distance * 2, 16777215.0F);
  ASSERT_LE(tangent * distance * 2, 16777216.0F);
  EXPECT_EQ(ozkCalDepthImgSampleFactor(60, 16777217, distance),
            ozkCalDepthImgSampleFactor(60, 16777216, distance));
}

TEST(SampleFactor, WhatAnIntCannotHoldIsTheSmallestOne) {
  EXPECT_EQ(ozkCalDepthImgSampleFactor(60, 0, 1000), INT_MIN);  // infinity
  EXPECT_EQ(ozkCalDepthImgSampleFactor(60, 0, -1000), INT_MIN); // minus infinity
  EXPECT_EQ(ozkCalDepthImgSampleFactor(60, 0, 0), INT_MIN);     // NaN
  EXPECT_EQ(ozkCalDepthImgSampleFactor(kNan, 100, 1000), INT_MIN);
  EXPECT_EQ(ozkCalDepthImgSampleFactor(kInfinity, 100, 1000), INT_MIN);
  EXPECT_EQ(ozkCalDepthImgSampleFactor(60, 100, kNan), INT_MIN);
  EXPECT_EQ(ozkCalDepthImgSampleFactor(60, 100, kInfinity), INT_MIN);
  EXPECT_EQ(ozkCalDepthImgSampleFactor(60, 1, 1e10F), INT_MIN);
  EXPECT_EQ(ozkCalDepthImgSampleFactor(60, 1, -1e10F), INT_MIN);
  EXPECT_EQ(ozkCalDepthImgSampleFactor(180, 1, 1000), INT_MIN); // next to infinitely wide
}

// The largest float below 2^31 is held.
TEST(SampleFactor, LargestSide) {
  const float tangent = tangentOf30Degrees();
  float distance = 2147483648.0F / 2 / tangent;
  while (tangent * distance * 2 >= 2147483648.0F) distance = std::nextafter(distance, 0.0F);
  EXPECT_EQ(ozkCalDepthImgSampleFactor(60, 1, distance), static_cast<int>(tangent * distance * 2));
  distance = std::nextafter(std::nextafter(distance, kInfinity), kInfinity);
  EXPECT_EQ(ozkCalDepthImgSampleFactor(60, 1, distance), INT_MIN);
}

class FieldSize : public testing::Test {
 protected:
  int call(int width, int height, float distance) {
    return ozkCalFieldSizeByWorkdistance(width, height, &intrinsic, distance, &field);
  }

  void expectField(float x1, float y1, float x2, float y2) const {
    EXPECT_EQ(field.x1, x1);
    EXPECT_EQ(field.y1, y1);
    EXPECT_EQ(field.x2, x2);
    EXPECT_EQ(field.y2, y2);
  }

  void setCamera(double fx, double fy, double cx, double cy) {
    intrinsic = {{fx, kIgnored, cx, kIgnored, fy, cy, kIgnored, kIgnored, kIgnored}};
  }

  static constexpr double kIgnored = 1e300;
  tagOzKCamIntrinsic intrinsic{{500, kIgnored, 319.5, kIgnored, 400, 239.5, kIgnored, kIgnored, 0}};
  tagOzKRect2Df32 field{9, 9, 9, 9};
};

TEST_F(FieldSize, CentredCameraSeesASymmetricField) {
  EXPECT_EQ(call(640, 480, 1000), kOzkSuccess);
  expectField(-639, -598.75F, 639, 598.75F);
}

TEST_F(FieldSize, OffCentre) {
  setCamera(100, 200, 10, 20);
  EXPECT_EQ(call(101, 51, 200), kOzkSuccess);
  expectField(-20, -20, 180, 30);
}

TEST_F(FieldSize, EndsAreOrdered) {
  setCamera(100, 200, 10, 20);
  EXPECT_EQ(call(101, 51, -200), kOzkSuccess);
  expectField(-180, -30, 20, 20);
  setCamera(-100, 200, 10, 20);
  EXPECT_EQ(call(101, 51, 200), kOzkSuccess);
  expectField(-180, -20, 20, 30);
}

TEST_F(FieldSize, CoordinatesAreRoundedOnce) {
  setCamera(3, 7, 0.1, 0.2);
  EXPECT_EQ(call(641, 481, 0.3F), kOzkSuccess);
  const double distance = 0.3F;
  expectField(static_cast<float>((0 - 0.1) / 3 * distance),
              static_cast<float>((0 - 0.2) / 7 * distance),
              static_cast<float>((640 - 0.1) / 3 * distance),
              static_cast<float>((480 - 0.2) / 7 * distance));
}

// 2^24 + 2 is rounded to itself, 2^24 + 3 to 2^24 + 4; one less than an even number is a tie.
TEST_F(FieldSize, LastPixelIsSinglePrecision) {
  setCamera(2, 2, 0, 0);
  EXPECT_EQ(call(16777217, 16777219, 1), kOzkSuccess);
  expectField(0, 0, 16777215.0F / 2, 16777220.0F / 2);
}

TEST_F(FieldSize, SizeIsNotChecked) {
  setCamera(1, 1, 0, 0);
  EXPECT_EQ(call(0, -4, 1), kOzkSuccess);
  expectField(-1, -5, 0, 0);
  EXPECT_EQ(call(INT_MIN, INT_MAX, 0.5F), kOzkSuccess);
  expectField(-1073741824.0F, 0, 0, 1073741824.0F);
}

// The smaller end starts from 16777215 and the larger one from -16777215.
TEST_F(FieldSize, EndsBeyondWhereTheExtremesStart) {
  setCamera(1, 1, -2e7, 4e7);
  EXPECT_EQ(call(1000001, 1000001, 1), kOzkSuccess);
  expectField(16777215, -4e7F, 21e6F, -16777215);
}

TEST_F(FieldSize, HostileIntrinsics) {
  setCamera(0, 0, 0, 5);
  EXPECT_EQ(call(11, 11, 1), kOzkSuccess); // columns NaN and infinity, rows both infinities
  expectField(16777215, -kInfinity, kInfinity, kInfinity);
  setCamera(1, 1, static_cast<double>(kNan), 0);
  EXPECT_EQ(call(11, 11, 1), kOzkSuccess);
  expectField(16777215, 0, -16777215, 10);
  setCamera(1, 1, 0, 0);
  EXPECT_EQ(call(11, 11, kNan), kOzkSuccess);
  expectField(16777215, 16777215, -16777215, -16777215);
}

TEST_F(FieldSize, NullArguments) {
  EXPECT_EQ(ozkCalFieldSizeByWorkdistance(640, 480, nullptr, 1, &field), kOzkNullPointer);
  EXPECT_EQ(ozkCalFieldSizeByWorkdistance(640, 480, &intrinsic, 1, nullptr), kOzkNullPointer);
  expectField(9, 9, 9, 9);
}

} // namespace
} // namespace velmorn
