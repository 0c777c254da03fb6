// The choice among many corners.
#include "brantis64/even_spread.h"

#include <algorithm>

#include <gtest/gtest.h>

namespace velmorn::brantis {
namespace {

std::vector<GridCorner> field(int columns, int rows) {
  std::vector<GridCorner> corners;
  for (int column = columns - 1; column >= 0; --column)
    for (int row = 0; row < rows; ++row) corners.push_back({{column, row}, {}, 0});
  return corners;
}

bool has(const std::vector<GridCorner>& corners, GridPoint at) {
  return std::any_of(corners.begin(), corners.end(),
                     [at](const GridCorner& c) { return c.at == at; });
}

TEST(EvenSpread, KeepsAFewInOrder) {
  const std::vector<GridCorner> corners = evenSpread(field(3, 2), 6);
  ASSERT_EQ(corners.size(), 6U);
  EXPECT_EQ(corners[1].at, (GridPoint{1, 0}));
  EXPECT_EQ(corners[3].at, (GridPoint{0, 1}));
  EXPECT_TRUE(evenSpread({}, 6).empty());
}

TEST(EvenSpread, TakesTheOutermostOfMany) {
  const std::vector<GridCorner> corners = evenSpread(field(21, 21), 4);
  ASSERT_EQ(corners.size(), 4U);
  for (const GridPoint at :
       {GridPoint{0, 0}, GridPoint{20, 0}, GridPoint{0, 20}, GridPoint{20, 20}})
    EXPECT_TRUE(has(corners, at));
}

TEST(EvenSpread, LeavesNoLargeHole) {
  const std::vector<GridCorner> all = field(60, 40);
  const std::vector<GridCorner> corners = evenSpread(all, 512);
  ASSERT_EQ(corners.size(), 512U);
  for (const GridCorner& c : all) {
    int nearest = 1 << 20;
    for (const GridCorner& chosen : corners)
      nearest = std::min(nearest, std::max(std::abs(c.at.column - chosen.at.column),
                                           std::abs(c.at.row - chosen.at.row)));
    EXPECT_LE(nearest, 2);
  }
}

} // namespace
} // namespace velmorn::brantis
