// Windows of the final fits.
#include "brantis64/window_choice.h"

#include <gtest/gtest.h>

namespace velmorn::brantis {
namespace {

CornerGrid bentGrid(double bend, int columns, int rows) {
  CornerGrid grid({0, 0});
  for (int row = 0; row < rows; ++row)
    for (int column = 0; column < columns; ++column) {
      const double x = 40.0 * column;
      grid.insert({{column, row}, {x, 40.0 * row + bend * x * x}, 200});
    }
  return grid;
}

TEST(LineBend, IsAParabolasFactor) {
  const CornerGrid grid = bentGrid(2e-4, 7, 3);
  EXPECT_NEAR(lineBend(grid, {3, 1}, {1, 0}, 2, {0, 1}), 2e-4, 1e-5);
  EXPECT_NEAR(lineBend(grid, {3, 1}, {1, 0}, 2, {0, -1}), -2e-4, 1e-5);
  EXPECT_NEAR(lineBend(grid, {0, 1}, {1, 0}, 2, {0, 1}), 2e-4, 1e-5); // from one side
  EXPECT_NEAR(lineBend(grid, {3, 1}, {0, 1}, 2, {1, 0}), 0, 1e-9);
}

TEST(LineBend, IsNothingWithoutThreeCorners) {
  const CornerGrid grid = bentGrid(2e-4, 2, 2);
  EXPECT_EQ(lineBend(grid, {0, 0}, {1, 0}, 3, {0, 1}), 0);
  EXPECT_EQ(lineBend(grid, {9, 9}, {1, 0}, 3, {0, 1}), 0);
}

TEST(ChooseWindow, ReachesAsFarAsThePatternIsKnown) {
  const CornerGrid grid = bentGrid(0, 4, 4);
  CornerTask task;
  ASSERT_TRUE(chooseWindow(grid, *grid.find({0, 1}), 1, task));
  EXPECT_NEAR(task.reach.left, 0.45, 0.01); // half a square less the blur
  EXPECT_EQ(task.reach.right, 0.75);
  EXPECT_EQ(task.reach.up, 0.75);
  EXPECT_EQ(task.reach.down, 0.75);
  EXPECT_EQ(task.frame.pixel, cv::Point2d(0, 40));
  EXPECT_FALSE(task.whiteLowerRight);
  EXPECT_EQ(task.contrast, 200);
}

// Every second column and row only.
CornerGrid thinGrid(double bend, int columns, int rows) {
  CornerGrid grid = bentGrid(bend, columns, rows);
  for (int row = 0; row < rows; ++row)
    for (int column = 0; column < columns; ++column)
      if (!(GridPoint{column, row} % 2 == GridPoint{0, 0})) grid.erase({column, row});
  return grid;
}

TEST(LineBend, StopsAtAHoleUnlessTheGridIsThin) {
  CornerGrid grid = thinGrid(2e-4, 9, 5);
  EXPECT_EQ(lineBend(grid, {4, 2}, {1, 0}, 4, {0, 1}), 0);
  grid.setSpacing(2);
  EXPECT_NEAR(lineBend(grid, {4, 2}, {1, 0}, 4, {0, 1}), 2e-4, 1e-5);
  grid.erase({6, 2}); // three in a row are missing
  EXPECT_NEAR(lineBend(grid, {4, 2}, {1, 0}, 4, {0, 1}), 2e-4, 1e-5);
  grid.erase({2, 2});
  EXPECT_EQ(lineBend(grid, {4, 2}, {1, 0}, 4, {0, 1}), 0);
}

TEST(ChooseWindow, ReachesOverTheHolesOfAThinGrid) {
  CornerGrid grid = thinGrid(0, 7, 7);
  grid.setSpacing(2);
  CornerTask task;
  ASSERT_TRUE(chooseWindow(grid, *grid.find({0, 2}), 1, task));
  EXPECT_NEAR(task.reach.left, 0.45, 0.01); // nothing there
  EXPECT_EQ(task.reach.right, 0.75);
  EXPECT_EQ(task.reach.up, 0.75);
  EXPECT_EQ(task.reach.down, 0.75);
}

TEST(ChooseWindow, NeedsNeighbours) {
  CornerGrid grid({0, 0});
  grid.insert({{0, 0}, {5, 5}, 200});
  CornerTask task;
  EXPECT_FALSE(chooseWindow(grid, *grid.find({0, 0}), 1, task));
}

} // namespace
} // namespace velmorn::brantis
