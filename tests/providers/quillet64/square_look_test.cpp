// Grey levels of squares.
#include "quillet64/square_look.h"

#include <cmath>

#include <gtest/gtest.h>
#include <opencv2/imgproc.hpp>

#include "providers/quillet64/code_squares.h"
#include "quillet64/pixel_sampling.h"

namespace velmorn::quillet {
namespace {

TEST(GreyAt, IsBilinearAndEndsAtTheOutermostPixels) {
  const cv::Mat grey = (cv::Mat_<uchar>(2, 2) << 0, 100, 40, 80);
  EXPECT_EQ(greyAt(grey, {0, 0}), 0);
  EXPECT_EQ(greyAt(grey, {1, 1}), 80);
  EXPECT_EQ(greyAt(grey, {0.5, 0}), 50);
  EXPECT_EQ(greyAt(grey, {0.5, 0.5}), 55);
  EXPECT_EQ(greyAt(grey, {1.01, 0}), std::nullopt);
  EXPECT_EQ(greyAt(grey, {0, -0.01}), std::nullopt);
  EXPECT_EQ(greyAt(grey, {std::nan(""), 0}), std::nullopt);
}

TEST(SquareLook, MeasuresBlackAndWhite) {
  const DrawnSquare drawn = drawnEmptySquare(48);
  const auto look = lookAtSquare(drawn.grey, drawn.quad);
  ASSERT_TRUE(look);
  EXPECT_NEAR(look->black, kDrawnBlack, 1e-9);
  EXPECT_NEAR(look->white, kDrawnWhite, 1e-9);
  EXPECT_NEAR(look->whiteAlongU, 0, 1e-9);
  EXPECT_NEAR(look->whiteAlongV, 0, 1e-9);
}

TEST(SquareLook, DarknessGoesFromWhiteToBlack) {
  const SquareLook look{20, 120, 40, -20};
  EXPECT_DOUBLE_EQ(look.darkness(20, {0.5, 0.5}), 1);
  EXPECT_DOUBLE_EQ(look.darkness(120, {0.5, 0.5}), 0);
  EXPECT_DOUBLE_EQ(look.darkness(140, {1, 0.5}), 0);
  EXPECT_DOUBLE_EQ(look.darkness(130, {0.5, 0}), 0);
  EXPECT_DOUBLE_EQ(look.darkness(70, {0.5, 0.5}), 0.5);
}

TEST(SquareLook, FollowsTheLight) {
  DrawnSquare drawn = drawnEmptySquare(48);
  for (int y = 0; y < drawn.grey.rows; ++y)
    for (int x = 0; x < drawn.grey.cols; ++x)
      drawn.grey.at<uchar>(y, x) =
          static_cast<uchar>(drawn.grey.at<uchar>(y, x) * (100 + x) / (100 + drawn.grey.cols));
  const auto look = lookAtSquare(drawn.grey, drawn.quad);
  ASSERT_TRUE(look);
  // From one side of the square to the other, x grows by 48.
  EXPECT_NEAR(look->whiteAlongU, 220.0 * 48 / 340, 1.5);
  EXPECT_NEAR(look->whiteAlongV, 0, 0.5);
}

TEST(SquareLook, RefusesWhatIsNoWhiteSquareAmongBlackOnes) {
  const DrawnSquare drawn = drawnEmptySquare(48);
  const cv::Mat flat(200, 200, CV_8UC1, cv::Scalar(128));
  EXPECT_FALSE(lookAtSquare(flat, {cv::Point2f(50, 50), {100, 50}, {100, 100}, {50, 100}}));
  EXPECT_FALSE(lookAtSquare(255 - drawn.grey, drawn.quad));
  Quad shifted = drawn.quad;
  for (cv::Point2f& corner : shifted) corner.x += 24;
  EXPECT_FALSE(lookAtSquare(drawn.grey, shifted));
}

TEST(SquareLook, OneCoveredNeighbourIsForgivenTwoAreNot) {
  DrawnSquare drawn = drawnEmptySquare(48);
  drawn.grey({96, 48, 48, 48}).setTo(kDrawnWhite);
  EXPECT_TRUE(lookAtSquare(drawn.grey, drawn.quad));
  drawn.grey({48, 96, 48, 48}).setTo(kDrawnWhite);
  EXPECT_FALSE(lookAtSquare(drawn.grey, drawn.quad));
}

TEST(SquareLook, MeasuresTheBlurOfTheSides) {
  for (const double sigma : {0.8, 1.5, 2.5}) {
    DrawnSquare drawn = drawnEmptySquare(96);
    cv::GaussianBlur(drawn.grey, drawn.grey, {0, 0}, sigma);
    const auto look = lookAtSquare(drawn.grey, drawn.quad);
    ASSERT_TRUE(look);
    // The pixels themselves blur with a variance of a twelfth. Sides along the pixels are the worst
    // case: all places along them fall between the pixels in the same way.
    const double expected = std::sqrt(sigma * sigma + 1.0 / 12);
    EXPECT_NEAR(blurAtSides(drawn.grey, drawn.quad, *look), expected, 0.15 * expected) << sigma;
  }
}

} // namespace
} // namespace velmorn::quillet
