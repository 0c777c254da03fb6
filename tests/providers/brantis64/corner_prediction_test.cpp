// Predictions from neighbours.
#include "brantis64/corner_prediction.h"

#include <cmath>

#include <gtest/gtest.h>

namespace velmorn::brantis {
namespace {

cv::Point2d perspective(double u, double v) {
  const double w = 1 + 0.01 * u - 0.02 * v;
  return {(300 + 40 * u - 5 * v) / w, (200 + 6 * u + 38 * v) / w};
}

CornerGrid gridOf(cv::Point2d (*place)(double, double), int first, int last) {
  CornerGrid grid({0, 0});
  for (int row = first; row <= last; ++row)
    for (int column = first; column <= last; ++column)
      grid.insert({{column, row}, place(column, row), 200});
  return grid;
}

TEST(FrameFromSamples, ThreePointsGiveAnAffineMap) {
  LocalFrame frame;
  ASSERT_TRUE(frameFromSamples({{1, 0, {30, 12}}, {0, 1, {18, 31}}, {1, 1, {28, 33}}}, frame));
  // The parallelogram's fourth corner.
  EXPECT_NEAR(frame.pixel.x, 20, 1e-9);
  EXPECT_NEAR(frame.pixel.y, 10, 1e-9);
  EXPECT_NEAR(frame.columnStep.x, 10, 1e-9);
  EXPECT_NEAR(frame.rowStep.y, 21, 1e-9);
}

TEST(FrameFromSamples, RefusesTooFewAndCollinear) {
  LocalFrame frame;
  frame.pixel = {5, 6};
  EXPECT_FALSE(frameFromSamples({}, frame));
  EXPECT_FALSE(frameFromSamples({{1, 0, {30, 12}}, {0, 1, {18, 31}}}, frame));
  EXPECT_FALSE(frameFromSamples(
      {{1, 0, {10, 0}}, {2, 0, {20, 0}}, {3, 0, {30, 0}}, {-1, 0, {-10, 0}}}, frame));
  EXPECT_FALSE(frameFromSamples({{1, 1, {10, 0}}, {2, 2, {20, 5}}, {3, 3, {30, 9}}}, frame));
  EXPECT_EQ(frame.pixel, cv::Point2d(5, 6));
}

TEST(PredictCorner, FollowsPerspective) {
  CornerGrid grid = gridOf(perspective, -3, 3);
  LocalFrame frame;
  ASSERT_TRUE(predictCorner(grid, {0, 0}, frame));
  EXPECT_NEAR(cv::norm(frame.pixel - perspective(0, 0)), 0, 0.02);
  const double h = 1e-4;
  const cv::Point2d columnStep = (perspective(h, 0) - perspective(-h, 0)) * (0.5 / h);
  EXPECT_NEAR(cv::norm(frame.columnStep - columnStep), 0, 0.1);
  // One square beyond the known ones, at the corner.
  ASSERT_TRUE(predictCorner(grid, {4, 4}, frame));
  EXPECT_NEAR(cv::norm(frame.pixel - perspective(4, 4)), 0, 1);
}

TEST(PredictCorner, LeavesTheCornerItselfOut) {
  CornerGrid grid = gridOf(perspective, -3, 3);
  grid.erase({0, 0});
  grid.insert({{0, 0}, {9999, 9999}, 200});
  LocalFrame frame;
  ASSERT_TRUE(predictCorner(grid, {0, 0}, frame));
  EXPECT_NEAR(cv::norm(frame.pixel - perspective(0, 0)), 0, 0.02);
}

cv::Point2d barrel(double u, double v) {
  const cv::Point2d p(140 * u, 140 * v);
  return p * (1 - 8e-8 * p.dot(p));
}

TEST(PredictCorner, FollowsALensBeyondTheKnownCorners) {
  const CornerGrid grid = gridOf(barrel, 0, 3);
  LocalFrame frame;
  ASSERT_TRUE(predictCorner(grid, {4, 4}, frame));
  EXPECT_LT(cv::norm(frame.pixel - barrel(4, 4)), 0.04 * 140);
}

TEST(PredictCorner, NeedsNeighbours) {
  CornerGrid grid({0, 0});
  LocalFrame frame;
  EXPECT_FALSE(predictCorner(grid, {0, 0}, frame));
  for (int i = 1; i < 5; ++i) grid.insert({{i, 0}, {40.0 * i, 0}, 200});
  EXPECT_FALSE(predictCorner(grid, {0, 0}, frame));
}

} // namespace
} // namespace velmorn::brantis
