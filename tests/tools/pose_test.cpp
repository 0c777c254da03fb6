// Rigid transforms as 4x4 matrices.
#include "velmorn/pose.h"

#include <gtest/gtest.h>

#include <limits>

namespace velmorn::tool {
namespace {

// A quarter turn about z, then (1, 2, 3).
const cv::Matx44d kQuarterTurn(0, -1, 0, 1, 1, 0, 0, 2, 0, 0, 1, 3, 0, 0, 0, 1);

TEST(Pose, TakesRotationAndTranslation) {
  const cv::Mat R = (cv::Mat_<double>(3, 3) << 0, -1, 0, 1, 0, 0, 0, 0, 1);
  const cv::Mat T = (cv::Mat_<double>(3, 1) << 1, 2, 3);
  EXPECT_EQ(cv::norm(poseFrom(R, T) - kQuarterTurn), 0);
}

TEST(Pose, TakesTheLibrarysRecordAsItIs) {
  tagOzKCamExtrinsic record{};
  for (int i = 0; i < 16; ++i) record.data[i] = i;
  EXPECT_EQ(poseFrom(record)(1, 0), 4);
  EXPECT_EQ(poseFrom(record)(3, 3), 15);
}

TEST(Pose, InverseIsWorkedByHand) {
  // R^T = quarter turn back, -R^T (1, 2, 3) = (-2, 1, -3).
  const cv::Matx44d expected(0, 1, 0, -2, -1, 0, 0, 1, 0, 0, 1, -3, 0, 0, 0, 1);
  EXPECT_EQ(cv::norm(inversePose(kQuarterTurn) - expected), 0);
}

TEST(Pose, AngleIsExactAtBothEnds) {
  EXPECT_EQ(rotationDegrees(cv::Matx44d::eye()), 0);
  EXPECT_DOUBLE_EQ(rotationDegrees(kQuarterTurn), 90);
  EXPECT_DOUBLE_EQ(rotationDegrees(cv::Matx44d::diag({-1, -1, 1, 1})), 180);
  const double tiny = 1e-9; // radians
  const cv::Matx44d nearly(1, -tiny, 0, 0, tiny, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1);
  EXPECT_NEAR(rotationDegrees(nearly), tiny * 180 / CV_PI, 1e-18);
}

TEST(Pose, TranslationIsTheLastColumn) {
  EXPECT_EQ(translationOf(kQuarterTurn), cv::Vec3d(1, 2, 3));
}

TEST(Pose, NoticesNumbersThatAreNotFinite) {
  EXPECT_TRUE(isFinitePose(kQuarterTurn));
  cv::Matx44d pose = kQuarterTurn;
  pose(2, 1) = std::numeric_limits<double>::quiet_NaN();
  EXPECT_FALSE(isFinitePose(pose));
  pose(2, 1) = std::numeric_limits<double>::infinity();
  EXPECT_FALSE(isFinitePose(pose));
}

TEST(Pose, CarriesAPoint) {
  const cv::Matx44d quarterTurn(0, -1, 0, 10, 1, 0, 0, 20, 0, 0, 1, 30, 0, 0, 0, 1);
  EXPECT_EQ(transformed(quarterTurn, {1, 2, 3}), cv::Vec3d(8, 21, 33));
}

} // namespace
} // namespace velmorn::tool
