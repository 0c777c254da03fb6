// Corners that do not fit.
#include "brantis64/outlier_check.h"

#include <gtest/gtest.h>

namespace velmorn::brantis {
namespace {

CornerGrid regularGrid() {
  CornerGrid grid({0, 0});
  for (int row = 0; row < 8; ++row)
    for (int column = 0; column < 8; ++column)
      grid.insert({{column, row}, {30.0 * column + row, 31.0 * row}, 200});
  return grid;
}

TEST(RemoveOutliers, KeepsARegularGrid) {
  CornerGrid grid = regularGrid();
  EXPECT_EQ(removeOutliers(grid), 0U);
  EXPECT_EQ(grid.corners().size(), 64U);
}

TEST(RemoveOutliers, TakesOutTheWrongOneAndNoOther) {
  for (const GridPoint at : {GridPoint{3, 3}, GridPoint{0, 4}, GridPoint{7, 7}}) {
    CornerGrid grid = regularGrid();
    GridCorner moved = *grid.find(at);
    grid.erase(at);
    moved.pixel += cv::Point2d(5, -2);
    grid.insert(moved);
    EXPECT_EQ(removeOutliers(grid), 1U);
    EXPECT_EQ(grid.find(at), nullptr);
  }
}

// Nothing but every second column and row around: still judged as strictly as inside a dense grid.
TEST(RemoveOutliers, IsAsStrictInsideAThinGrid) {
  for (const int spacing : {1, 2}) {
    CornerGrid grid({0, 0});
    grid.setSpacing(spacing);
    for (int row = 0; row < 9; ++row)
      for (int column = 0; column < 9; ++column)
        grid.insert({{spacing * column, spacing * row}, {60.0 * column, 60.0 * row}, 200});
    const GridPoint at = spacing * GridPoint{4, 4};
    GridCorner moved = *grid.find(at);
    grid.erase(at);
    moved.pixel.x += spacing == 1 ? 2.5 : 1.7; // allowed: 2.2 and 1.45; at rims 4.3 and 2.5
    grid.insert(moved);
    EXPECT_EQ(removeOutliers(grid), 1U) << spacing;
    EXPECT_EQ(grid.find(at), nullptr);
  }
}

TEST(RemoveOutliers, TakesOutWhatNothingPredicts) {
  CornerGrid grid = regularGrid();
  grid.insert({{30, 30}, {500, 500}, 200});
  EXPECT_EQ(removeOutliers(grid), 1U);
  EXPECT_EQ(grid.find({30, 30}), nullptr);
}

} // namespace
} // namespace velmorn::brantis
