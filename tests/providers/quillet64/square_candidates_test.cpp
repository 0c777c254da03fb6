// Dark squares among other dark things.
#include "quillet64/square_candidates.h"

#include <cmath>
#include <vector>

#include <gtest/gtest.h>
#include <opencv2/imgproc.hpp>

#include "providers/quillet64/code_squares.h"

namespace velmorn::quillet {
namespace {

constexpr DarkThreshold kThreshold{41, false};

cv::Mat paper() { return cv::Mat(200, 300, CV_8UC1, cv::Scalar(kDrawnWhite)); }

// Drawn with soft edges.
void drawPolygon(cv::Mat& grey, const std::vector<cv::Point2f>& corners) {
  constexpr int kShift = 4;
  std::vector<cv::Point> fixed;
  for (const cv::Point2f& p : corners)
    fixed.emplace_back(cvRound(p.x * (1 << kShift)), cvRound(p.y * (1 << kShift)));
  cv::fillConvexPoly(grey, fixed, cv::Scalar(kDrawnBlack), cv::LINE_AA, kShift);
}

// Largest distance between corners, from the best starting corner.
double apart(const Quad& a, const Quad& b) {
  double best = 1e9;
  for (int turns = 0; turns < 4; ++turns) {
    double largest = 0;
    for (std::size_t k = 0; k < 4; ++k)
      largest = std::max(largest, cv::norm(turnedQuad(a, turns)[k] - b[k]));
    best = std::min(best, largest);
  }
  return best;
}

TEST(SquareCandidates, FindsASquareInAnyRotation) {
  for (int degrees = 0; degrees < 90; degrees += 15) {
    cv::Mat grey = paper();
    const cv::RotatedRect square({150, 100}, {40, 40}, static_cast<float>(degrees));
    Quad corners;
    square.points(corners.data());
    if (!isProperQuad(corners)) std::swap(corners[1], corners[3]);
    drawPolygon(grey, {corners.begin(), corners.end()});
    const auto quads = findDarkQuads(grey, kThreshold);
    ASSERT_EQ(quads.size(), 1U) << degrees;
    EXPECT_TRUE(isProperQuad(quads[0]));
    EXPECT_LT(apart(quads[0], corners), 1.5) << degrees;
  }
}

TEST(SquareCandidates, SquaresThatTouchAtTheirCornersArePartedWhereAsked) {
  cv::Mat grey = drawnEmptySquare(24).grey;
  cv::GaussianBlur(grey, grey, {0, 0}, 1);
  EXPECT_EQ(findDarkQuads(grey, {101, true}).size(), 4U);
}

TEST(SquareCandidates, LargestFirst) {
  cv::Mat grey = paper();
  grey({20, 20, 12, 12}).setTo(kDrawnBlack);
  grey({60, 20, 50, 50}).setTo(kDrawnBlack);
  grey({150, 20, 30, 30}).setTo(kDrawnBlack);
  const auto quads = findDarkQuads(grey, kThreshold);
  ASSERT_EQ(quads.size(), 3U);
  EXPECT_NEAR(shortestSide(quads[0]), 50, 1.5);
  EXPECT_NEAR(shortestSide(quads[1]), 30, 1.5);
  EXPECT_NEAR(shortestSide(quads[2]), 12, 1.5);
}

TEST(SquareCandidates, SquaresInsideADarkFrameAreFound) {
  cv::Mat grey = paper();
  cv::rectangle(grey, {5, 5, 290, 190}, cv::Scalar(kDrawnBlack), 6);
  grey({60, 60, 30, 30}).setTo(kDrawnBlack);
  const auto quads = findDarkQuads(grey, kThreshold);
  ASSERT_FALSE(quads.empty());
  EXPECT_NEAR(shortestSide(quads.back()), 30, 1.5);
}

TEST(SquareCandidates, OtherShapesAndHolesAreLeftOut) {
  cv::Mat grey = paper();
  cv::circle(grey, {50, 50}, 25, cv::Scalar(kDrawnBlack), -1);
  drawPolygon(grey, {{100, 20}, {160, 30}, {120, 80}});
  grey({200, 20, 60, 6}).setTo(kDrawnBlack); // too slender
  grey({0, 100, 30, 30}).setTo(kDrawnBlack); // goes on outside the image
  cv::line(grey, {60, 120}, {100, 190}, cv::Scalar(kDrawnBlack), 2);
  cv::line(grey, {100, 120}, {60, 190}, cv::Scalar(kDrawnBlack), 2);
  EXPECT_EQ(findDarkQuads(grey, kThreshold).size(), 0U);
}

TEST(SquareCandidates, NothingInFlatAndTinyImages) {
  EXPECT_TRUE(findDarkQuads(paper(), kThreshold).empty());
  for (const cv::Size size : {cv::Size(1, 1), cv::Size(3, 3), cv::Size(1, 100), cv::Size(5, 5)})
    EXPECT_TRUE(findDarkQuads(cv::Mat(size, CV_8UC1, cv::Scalar(0)), kThreshold).empty());
}

TEST(SquareCandidates, TheirNumberIsBounded) {
  cv::Mat grey(1000, 1000, CV_8UC1, cv::Scalar(kDrawnWhite));
  for (int y = 10; y < 980; y += 20)
    for (int x = 10; x < 980; x += 20) grey({x, y, 10, 10}).setTo(kDrawnBlack);
  EXPECT_EQ(findDarkQuads(grey, kThreshold).size(), 500U);
}

} // namespace
} // namespace velmorn::quillet
