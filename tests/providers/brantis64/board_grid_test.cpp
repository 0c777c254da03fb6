// The corners by their place on the grid.
#include "brantis64/board_grid.h"

#include <gtest/gtest.h>

namespace velmorn::brantis {
namespace {

TEST(CornerGrid, FindsWhatWasPutIn) {
  CornerGrid grid({7, -3});
  grid.insert({{7, -3}, {1, 2}, 100});
  grid.insert({{8, -3}, {3, 4}, 90});
  ASSERT_NE(grid.find({8, -3}), nullptr);
  EXPECT_EQ(grid.find({8, -3})->pixel, cv::Point2d(3, 4));
  EXPECT_EQ(grid.find({8, -2}), nullptr);
}

TEST(CornerGrid, KeepsTheOthersWhenOneGoes) {
  CornerGrid grid({0, 0});
  for (int i = 0; i < 3; ++i) grid.insert({{i, 0}, {1.0 * i, 0}, 100});
  grid.erase({0, 0});
  grid.erase({0, 0}); // no longer there
  EXPECT_EQ(grid.find({0, 0}), nullptr);
  EXPECT_EQ(grid.find({1, 0})->pixel.x, 1);
  EXPECT_EQ(grid.find({2, 0})->pixel.x, 2);
  EXPECT_EQ(grid.corners().size(), 2U);
}

TEST(CornerGrid, ReachesSoFar) {
  const int reach = GridMap<int>::kReach;
  CornerGrid grid({1000, 0});
  EXPECT_TRUE(grid.reaches({1000 + reach, -reach}));
  EXPECT_FALSE(grid.reaches({1000 + reach + 1, 0}));
  EXPECT_FALSE(grid.reaches({1000, -reach - 1}));
  EXPECT_EQ(grid.find({-2000000000, 2000000000}), nullptr);
}

TEST(GridPoint, RestIsNeverNegative) {
  EXPECT_EQ((GridPoint{5, 4} % 2), (GridPoint{1, 0}));
  EXPECT_EQ((GridPoint{-5, -4} % 2), (GridPoint{1, 0}));
  EXPECT_EQ((GridPoint{-1, -3} % 3), (GridPoint{2, 0}));
}

TEST(GridPoint, OrdersByRowsFirst) {
  const GridCorner first{{5, 0}, {}, 0}, second{{1, 1}, {}, 0}, third{{2, 1}, {}, 0};
  EXPECT_TRUE(rowsFirst(first, second));
  EXPECT_TRUE(rowsFirst(second, third));
  EXPECT_FALSE(rowsFirst(third, first));
  EXPECT_FALSE(rowsFirst(third, third));
}

TEST(WhiteLowerRight, FollowsTheSquares) {
  EXPECT_TRUE(whiteLowerRight({0, 0})); // square (1, 1) is white
  EXPECT_FALSE(whiteLowerRight({1, 0}));
  EXPECT_FALSE(whiteLowerRight({-1, 0}));
  EXPECT_TRUE(whiteLowerRight({-1, -1}));
}

} // namespace
} // namespace velmorn::brantis
