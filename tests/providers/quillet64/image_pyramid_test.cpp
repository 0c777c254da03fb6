// Levels and the places on them.
#include "quillet64/image_pyramid.h"

#include <gtest/gtest.h>

namespace velmorn::quillet {
namespace {

TEST(ImagePyramid, SmallImagesAreNotHalved) {
  const cv::Mat grey(480, 640, CV_8UC1, cv::Scalar(9));
  const auto levels = imagePyramid(grey, 480);
  ASSERT_EQ(levels.size(), 1U);
  EXPECT_EQ(levels[0].data, grey.data);
}

TEST(ImagePyramid, HalvesUntilTheShortSideFits) {
  const auto levels = imagePyramid(cv::Mat(2049, 2448, CV_8UC1, cv::Scalar(9)), 720);
  ASSERT_EQ(levels.size(), 3U);
  EXPECT_EQ(levels[1].size(), cv::Size(1224, 1024));
  EXPECT_EQ(levels[2].size(), cv::Size(612, 512));
}

TEST(ImagePyramid, ALevelsPixelIsTheMeanOfFour) {
  const cv::Mat grey = (cv::Mat_<uchar>(2, 4) << 10, 20, 0, 0, 30, 40, 0, 100);
  const auto levels = imagePyramid(grey, 1);
  ASSERT_EQ(levels.size(), 2U);
  EXPECT_EQ(levels[1].at<uchar>(0, 0), 25);
  EXPECT_EQ(levels[1].at<uchar>(0, 1), 25);
}

TEST(ImagePyramid, PlacesGoBothWays) {
  // The first pixel's centre is the middle of four.
  EXPECT_EQ(onFinerLevel({0, 0}), cv::Point2f(0.5F, 0.5F));
  EXPECT_EQ(onFinerLevel({3, 1}), cv::Point2f(6.5F, 2.5F));
  EXPECT_EQ(onCoarserLevel({6.5F, 2.5F}), cv::Point2f(3, 1));
}

} // namespace
} // namespace velmorn::quillet
