// The decision about a corner.
#include "brantis64/corner_search.h"

#include <gtest/gtest.h>

#include "providers/brantis64/drawn_corner.h"

namespace velmorn::brantis {
namespace {

// Looks at (0, 0), whose lower right square is white, from a place that is off.
bool finds(const DrawnCorner& corner, cv::Point2d off, const CornerExpectation& expected,
           GridCorner& found) {
  LocalFrame frame = corner.frame();
  frame.pixel += off;
  const cv::Mat1b image = draw(corner);
  return CornerSearch(image).find(frame, {0, 0}, expected, found);
}

bool finds(const DrawnCorner& corner, cv::Point2d off = {}) {
  GridCorner found;
  return finds(corner, off, {190, 0.1}, found);
}

TEST(CornerSearch, FindsACornerNearby) {
  DrawnCorner corner;
  corner.place = {20.4, 19.7};
  for (const cv::Point2d off : {cv::Point2d(0, 0), {0.8, -0.7}, {3, 2.5}, {-3.5, 1}}) {
    GridCorner found;
    ASSERT_TRUE(finds(corner, off, {190, 0.1}, found)) << off;
    EXPECT_LT(cv::norm(found.pixel - corner.place), 0.02);
    EXPECT_NEAR(found.contrast, 190, 3);
    EXPECT_EQ(found.at, (GridPoint{0, 0}));
  }
}

TEST(CornerSearch, RefusesTheOtherPolarity) {
  DrawnCorner corner;
  corner.whiteLowerRight = false;
  EXPECT_FALSE(finds(corner));
}

TEST(CornerSearch, RefusesACornerTooFarAway) { EXPECT_FALSE(finds({}, {9, 9})); }

TEST(CornerSearch, RefusesAnotherContrastThanTheNeighbours) {
  DrawnCorner corner;
  corner.black = 100;
  corner.white = 150;
  EXPECT_FALSE(finds(corner)); // 50 beside 190
  GridCorner found;
  EXPECT_TRUE(finds(corner, {}, {60, 0.1}, found));
  EXPECT_TRUE(finds(corner, {}, {0, 0.1}, found)); // none known
  corner.white = 108;
  EXPECT_FALSE(finds(corner, {}, {0, 0.1}, found)); // too faint for anything
}

TEST(CornerSearch, KeepsAMarginToTheImagesEdge) {
  DrawnCorner corner;
  corner.place = {kBorderMargin + 0.3, 20};
  EXPECT_TRUE(finds(corner));
  corner.place = {kBorderMargin - 0.3, 20};
  EXPECT_FALSE(finds(corner));
  corner.place = {20, 40 - kBorderMargin + 0.3};
  EXPECT_FALSE(finds(corner));
}

TEST(CornerSearch, RefusesSquaresOfAFewPixels) {
  DrawnCorner corner;
  corner.square = 3.5;
  EXPECT_FALSE(finds(corner));
}

// Three of four quadrants alike: where the pattern meets its rim.
TEST(CornerSearch, RefusesASingleDarkQuadrant) {
  const DrawnCorner corner;
  cv::Mat1b image(41, 41, uchar{220});
  image(cv::Rect(20, 0, 21, 20)).setTo(30);
  GridCorner found;
  found.contrast = -1;
  EXPECT_FALSE(CornerSearch(image).find(corner.frame(), {0, 0}, {190, 0.1}, found));
  EXPECT_EQ(found.contrast, -1);
}

} // namespace
} // namespace velmorn::brantis
