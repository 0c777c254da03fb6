// Likeness with a crossing.
#include "brantis64/checker_correlation.h"

#include <gtest/gtest.h>

#include "providers/brantis64/drawn_corner.h"

namespace velmorn::brantis {
namespace {

TEST(CheckerCorrelation, IsOneForTheSharpPatternAndMinusOneForItsNegative) {
  DrawnCorner corner;
  corner.blur = 0.2;
  const CheckerCorrelation right(corner.frame(), true), wrong(corner.frame(), false);
  const cv::Mat1b image = draw(corner);
  EXPECT_NEAR(right.at(image, {20, 20}), 1, 0.01);
  EXPECT_NEAR(wrong.at(image, {20, 20}), -1, 0.01);
}

TEST(CheckerCorrelation, IsNothingOnAnEvenAreaAndOutside) {
  const CheckerCorrelation checker(DrawnCorner{}.frame(), true);
  EXPECT_EQ(checker.at(cv::Mat1b(41, 41, uchar{90}), {20, 20}), 0);
  EXPECT_EQ(checker.at(draw({}), {-30, 20}), 0);
  EXPECT_EQ(checker.at(draw({}), {1000, 1000}), 0);
}

TEST(CheckerCorrelation, IsLowOnAStraightEdge) {
  cv::Mat1b image(41, 41, uchar{30});
  image.colRange(20, 41).setTo(220);
  EXPECT_LT(CheckerCorrelation(DrawnCorner{}.frame(), true).at(image, {20, 20}), 0.3);
}

TEST(CheckerCorrelation, SearchFindsTheCrossing) {
  DrawnCorner corner;
  corner.place = {23, 18};
  corner.turn = 30;
  const CheckerCorrelation checker(corner.frame(), true);
  cv::Point best;
  EXPECT_GT(checker.search(draw(corner), {20, 20}, 5, best), 0.9);
  EXPECT_EQ(best, cv::Point(23, 18));
}

} // namespace
} // namespace velmorn::brantis
