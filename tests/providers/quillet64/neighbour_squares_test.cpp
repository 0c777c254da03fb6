// Neighbours of a square and their refinement.
#include "quillet64/neighbour_squares.h"

#include <algorithm>

#include <gtest/gtest.h>
#include <opencv2/imgproc.hpp>

#include "providers/quillet64/code_squares.h"
#include "quillet64/image_pyramid.h"

namespace velmorn::quillet {
namespace {

double apart(const Quad& a, const Quad& b) {
  double largest = 0;
  for (std::size_t k = 0; k < 4; ++k) largest = std::max(largest, cv::norm(a[k] - b[k]));
  return largest;
}

Quad boxQuad(float left, float top, float right, float bottom) {
  return {cv::Point2f(left, top), cv::Point2f(right, top), cv::Point2f(right, bottom),
          cv::Point2f(left, bottom)};
}

Quad shaken(const Quad& quad) {
  const cv::Point2f steps[] = {{0.9F, -0.7F}, {-0.8F, 0.5F}, {0.6F, 0.9F}, {-1.0F, -0.4F}};
  Quad moved = quad;
  for (std::size_t k = 0; k < 4; ++k) moved[k] += steps[k];
  return moved;
}

TEST(NeighbourSquares, LieAroundTheSquareInItsDirection) {
  const auto neighbours = neighbourSquares(boxQuad(10, 20, 30, 40));
  EXPECT_LT(apart(neighbours[0], boxQuad(10, 0, 30, 20)), 1e-4);
  EXPECT_LT(apart(neighbours[1], boxQuad(30, 20, 50, 40)), 1e-4);
  EXPECT_LT(apart(neighbours[2], boxQuad(10, 40, 30, 60)), 1e-4);
  EXPECT_LT(apart(neighbours[3], boxQuad(-10, 20, 10, 40)), 1e-4);
}

TEST(NeighbourSquares, FollowThePerspective) {
  // Squares of a board under this map.
  const cv::Matx33d map(30, 4, 50, -3, 28, 60, 0.02, 0.05, 1);
  const auto at = [&](double u, double v) { return cv::Point2f(mapPoint(map, {u, v})); };
  const Quad square = {at(0, 0), at(1, 0), at(1, 1), at(0, 1)};
  const Quad right = {at(1, 0), at(2, 0), at(2, 1), at(1, 1)};
  const Quad above = {at(0, -1), at(1, -1), at(1, 0), at(0, 0)};
  EXPECT_LT(apart(neighbourSquares(square)[1], right), 1e-3);
  EXPECT_LT(apart(neighbourSquares(square)[0], above), 1e-3);
}

TEST(RefinedQuad, DrawsCornersToTheCrossings) {
  for (const int side : {24, 48, 96}) {
    DrawnSquare drawn = drawnEmptySquare(side);
    cv::GaussianBlur(drawn.grey, drawn.grey, {0, 0}, 0.8);
    EXPECT_LT(apart(refinedQuad(drawn.grey, shaken(drawn.quad)), drawn.quad), 0.05) << side;
  }
}

TEST(RefinedQuad, TooSmallSquaresAndCornersAtTheBorderStay) {
  const DrawnSquare drawn = drawnEmptySquare(8);
  const Quad small = shaken(drawn.quad);
  EXPECT_EQ(apart(refinedQuad(drawn.grey, small), small), 0);

  const cv::Mat grey(60, 60, CV_8UC1, cv::Scalar(100));
  const Quad wide = boxQuad(1, 1, 58, 58);
  EXPECT_EQ(apart(refinedQuad(grey, wide), wide), 0);
  const Quad outside = boxQuad(-20, -20, 80, 80);
  EXPECT_EQ(apart(refinedQuad(grey, outside), outside), 0);
}

TEST(RefinedQuad, LargeSquaresStartOnACoarserLevel) {
  DrawnSquare drawn = drawnEmptySquare(160);
  cv::GaussianBlur(drawn.grey, drawn.grey, {0, 0}, 0.8);
  Quad far = drawn.quad;
  for (std::size_t k = 0; k < 4; ++k) far[k] = far[k] + 12 * (shaken(far)[k] - far[k]);
  EXPECT_GT(apart(far, drawn.quad), 10);
  EXPECT_LT(apart(refinedQuad(imagePyramid(drawn.grey, 120), far), drawn.quad), 0.05);
  // Beyond the window of the level itself.
  EXPECT_GT(apart(refinedQuad(drawn.grey, far), drawn.quad), 2);
}

TEST(CountCrossings, CountsCornersThatAreInPlace) {
  for (const int side : {16, 48, 160}) {
    DrawnSquare drawn = drawnEmptySquare(side);
    cv::GaussianBlur(drawn.grey, drawn.grey, {0, 0}, 0.8);
    EXPECT_EQ(countCrossings(drawn.grey, drawn.quad), 4) << side;
    Quad moved = drawn.quad;
    moved[2] += cv::Point2f(4, 1);
    EXPECT_EQ(countCrossings(drawn.grey, moved), 3) << side;
    // A black square's corners cross the other way round.
    EXPECT_EQ(countCrossings(drawn.grey, neighbourSquares(drawn.quad)[0]), 0) << side;
  }
  EXPECT_EQ(countCrossings(cv::Mat(50, 50, CV_8UC1, cv::Scalar(128)), boxQuad(10, 10, 30, 30)), 0);
  EXPECT_EQ(countCrossings(cv::Mat(5, 5, CV_8UC1, cv::Scalar(128)), boxQuad(0, 0, 4, 4)), 0);
}

} // namespace
} // namespace velmorn::quillet
