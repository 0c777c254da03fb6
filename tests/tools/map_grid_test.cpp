// The grid's size and its limit.
#include "velmorn/map_grid.h"

#include <gmock/gmock.h>

#include <limits>

#include "tools/expect_tool_error.h"

namespace velmorn::tool {
namespace {

using testing::HasSubstr;

TEST(MapGrid, HasACellForBothEdges) {
  EXPECT_EQ(mapGridSize({0, 0, 100, 50}, 1), cv::Size(101, 51));
  EXPECT_EQ(mapGridSize({0, 0, 100, 50}, 0.3F), cv::Size(334, 167));
  EXPECT_EQ(mapGridSize({5, 5, 5, 5}, 1), cv::Size(1, 1));
  EXPECT_EQ(mapGridSize({0, 0, 19999, 1}, 1), cv::Size(kMostCellsAlong, 2));
}

TEST(MapGrid, SaysHowLargeAGridWouldBe) {
  EXPECT_EQ(toolError([] {
              mapGridSize({0, 0, 20000, 10}, 1);
            }),
            "the grid would have 20001 x 11 cells, it may have 1 to 20000 each way; take larger "
            "cells");
  EXPECT_THAT(toolError([] { mapGridSize({-3e38F, 0, 3e38F, 1}, 1); }), HasSubstr("inf x 2"));
  EXPECT_THAT(toolError([] { mapGridSize({9, 0, 0, 1}, 1); }), HasSubstr("-8 x 2"));
  const float nan = std::numeric_limits<float>::quiet_NaN();
  EXPECT_THAT(toolError([&] { mapGridSize({0, 0, nan, 1}, 1); }), HasSubstr("nan x 2"));
}

TEST(MapGrid, Prints) { EXPECT_EQ(gridText({0, 0, 0.5, {51, 41}}), "51 x 41 cells of 0.5"); }

} // namespace
} // namespace velmorn::tool
