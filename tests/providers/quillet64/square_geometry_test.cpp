// Quadrilaterals and their frames.
#include "quillet64/square_geometry.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

namespace velmorn::quillet {
namespace {

const Quad kUpright = {cv::Point2f(10, 20), cv::Point2f(30, 20), cv::Point2f(30, 60),
                       cv::Point2f(10, 60)};
const Quad kTilted = {cv::Point2f(3, 4), cv::Point2f(40, 9), cv::Point2f(35, 30),
                      cv::Point2f(7, 44)};

TEST(SquareGeometry, MapTakesTheFrameToTheCorners) {
  const cv::Point2d frame[] = {{0, 0}, {1, 0}, {1, 1}, {0, 1}};
  for (const Quad& quad : {kUpright, kTilted})
    for (std::size_t k = 0; k < 4; ++k) {
      const cv::Point2d p = mapPoint(imageFromSquare(quad), frame[k]);
      EXPECT_NEAR(p.x, static_cast<double>(quad[k].x), 1e-9);
      EXPECT_NEAR(p.y, static_cast<double>(quad[k].y), 1e-9);
    }
}

TEST(SquareGeometry, StraightLinesStayStraight) {
  // The diagonals of the frame and of the quadrilateral cross in corresponding points.
  const cv::Point2d middle = mapPoint(imageFromSquare(kTilted), {0.5, 0.5});
  for (std::size_t k = 0; k < 2; ++k) {
    const cv::Point2d from = kTilted[k], to = kTilted[k + 2];
    EXPECT_NEAR((to - from).cross(middle - from) / cv::norm(to - from), 0, 1e-9);
  }
}

TEST(SquareGeometry, TurningMovesTheFrameNotTheSquare) {
  const Quad turned = turnedQuad(kTilted, 3);
  EXPECT_EQ(turned[0], kTilted[3]);
  EXPECT_EQ(turned[1], kTilted[0]);
  EXPECT_EQ(turnedQuad(turned, 1), kTilted);
}

TEST(SquareGeometry, SidesAndCentre) {
  EXPECT_FLOAT_EQ(shortestSide(kUpright), 20);
  EXPECT_FLOAT_EQ(longestSide(kUpright), 40);
  EXPECT_EQ(centre(kUpright), cv::Point2f(20, 40));
}

TEST(SquareGeometry, ProperIsClockwiseAndConvex) {
  EXPECT_TRUE(isProperQuad(kUpright));
  EXPECT_TRUE(isProperQuad(kTilted));
  EXPECT_FALSE(isProperQuad({kUpright[0], kUpright[3], kUpright[2], kUpright[1]})); // mirrored
  EXPECT_FALSE(isProperQuad({kUpright[0], kUpright[2], kUpright[1], kUpright[3]})); // crossed
  EXPECT_FALSE(isProperQuad({kUpright[0], kUpright[1], {15, 22}, kUpright[3]}));    // dented
  EXPECT_FALSE(isProperQuad({kUpright[0], kUpright[0], kUpright[2], kUpright[3]}));
  EXPECT_FALSE(isProperQuad({}));
  Quad broken = kUpright;
  broken[2].x = std::numeric_limits<float>::quiet_NaN();
  EXPECT_FALSE(isProperQuad(broken));
}

TEST(SquareGeometry, BorderIsKeptFreeOnAllSides) {
  EXPECT_TRUE(isInside(kUpright, {41, 71}, 10));
  EXPECT_FALSE(isInside(kUpright, {40, 71}, 10));
  EXPECT_FALSE(isInside(kUpright, {41, 70}, 10));
  EXPECT_FALSE(isInside(kUpright, {41, 71}, 10.5F));
}

} // namespace
} // namespace velmorn::quillet
