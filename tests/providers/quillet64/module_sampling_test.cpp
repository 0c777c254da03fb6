// Modules of drawn codes.
#include "quillet64/module_sampling.h"

#include <gtest/gtest.h>

#include "providers/quillet64/code_squares.h"
#include "velmorn/data_matrix.h"

namespace velmorn::quillet {
namespace {

cv::Mat_<float> asDarkness(const cv::Mat_<uchar>& dark) {
  cv::Mat_<float> darkness;
  dark.convertTo(darkness, CV_32F);
  return darkness;
}

TEST(ModuleSampling, PlaceInTheSquare) {
  EXPECT_EQ(inSquare(12, 0, 12), cv::Point2d(0.125, 0.875));
  EXPECT_EQ(inSquare(12, 6, 3), cv::Point2d(0.5, 0.3125));
}

TEST(ModuleSampling, SampledModulesAreTheDrawnOnes) {
  for (const int modules : {12, 16}) {
    const cv::Mat_<uchar> dark = tool::dataMatrix("12,7,20", modules);
    const DrawnSquare drawn = drawnSquare(dark, 64);
    const auto look = lookAtSquare(drawn.grey, drawn.quad);
    ASSERT_TRUE(look);
    const auto sampled = sampleModules(drawn.grey, drawn.quad, *look, modules);
    EXPECT_EQ(cv::norm(darkModules(sampled), dark, cv::NORM_INF), 0) << modules;
    EXPECT_NEAR(finderScore(sampled, 0), 1, 0.05);
  }
}

TEST(ModuleSampling, FinderSaysHowTheCodeStands) {
  const cv::Mat_<uchar> dark = tool::dataMatrix("12,7,20", 12);
  const DrawnSquare drawn = drawnSquare(dark, 64);
  for (int turns = 0; turns < 4; ++turns) {
    // The frame turned on means that the code has to be turned back.
    const Quad quad = turnedQuad(drawn.quad, turns);
    const auto look = lookAtSquare(drawn.grey, quad);
    ASSERT_TRUE(look);
    const auto sampled = sampleModules(drawn.grey, quad, *look, 12);
    const int back = (4 - turns) % 4;
    EXPECT_EQ(bestTurns(sampled), back);
    EXPECT_EQ(cv::norm(darkModules(turnedModules(sampled, back)), dark, cv::NORM_INF), 0);
  }
}

TEST(ModuleSampling, ScoreOfAPlainSquareIsLow) {
  // Of 44 border modules, 11 + 12 + 10 are dark: the others alone would be right.
  const cv::Mat_<float> white(12, 12, 0.0F), grey(12, 12, 0.5F);
  EXPECT_NEAR(finderScore(white, 0), (10.0 - 34.0) / 44, 0.1);
  EXPECT_NEAR(finderScore(grey, 2), 0, 1e-6);
}

TEST(ModuleSampling, SharpeningTakesBackWhatNeighboursSpill) {
  cv::Mat_<float> darkness(12, 12, 0.0F);
  darkness(5, 5) = 1;
  const auto sharp = sharpened(darkness);
  EXPECT_FLOAT_EQ(sharp(5, 5), 2);
  EXPECT_FLOAT_EQ(sharp(5, 6), -0.25F);
  EXPECT_FLOAT_EQ(sharp(8, 8), 0);
  // White around the code.
  EXPECT_FLOAT_EQ(sharpened(cv::Mat_<float>(12, 12, 1.0F))(0, 0), 1.5F);
}

TEST(ModuleSampling, DarkIsMoreThanHalf) {
  const cv::Mat_<float> darkness = (cv::Mat_<float>(2, 2) << 0.5F, 0.51F, 1.7F, -0.3F);
  const cv::Mat_<uchar> expected = (cv::Mat_<uchar>(2, 2) << 0, 1, 1, 0);
  EXPECT_EQ(cv::norm(darkModules(darkness), expected, cv::NORM_INF), 0);
  EXPECT_EQ(cv::norm(turnedModules(asDarkness(expected), 2),
                     asDarkness((cv::Mat_<uchar>(2, 2) << 0, 1, 1, 0)), cv::NORM_INF),
            0);
}

} // namespace
} // namespace velmorn::quillet
