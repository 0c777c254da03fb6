// Cells along a side, and the sizes that an aerial view may have.
#include "depth/grid_size.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

namespace velmorn {
namespace {

constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
constexpr float kInfinity = std::numeric_limits<float>::infinity();

TEST(CellsAlong, BothEdgesHaveACell) {
  EXPECT_EQ(cellsAlong(0, 100, 1), 101);
  EXPECT_EQ(cellsAlong(-50, 50, 2), 51);
  EXPECT_EQ(cellsAlong(3, 3, 1), 1);
}

TEST(CellsAlong, FractionIsDroppedTowardZero) {
  EXPECT_EQ(cellsAlong(0, 100, 0.3F), 334);
  EXPECT_EQ(cellsAlong(0, 50, 0.3F), 167);
  EXPECT_EQ(cellsAlong(0, -0.5F, 1), 1);
  EXPECT_EQ(cellsAlong(0, -1.5F, 1), 0);
  EXPECT_EQ(cellsAlong(0, -2, 1), -1);
}

// 0.7 / 0.1 is 6.99 in double and 7 in single precision.
TEST(CellsAlong, QuotientIsSinglePrecision) { EXPECT_EQ(cellsAlong(0, 0.7F, 0.1F), 8); }

TEST(CellsAlong, NothingIsUndefined) {
  EXPECT_EQ(cellsAlong(0, 1, 0), kInfinity);
  EXPECT_EQ(cellsAlong(0, 1e30F, 1e-30F), kInfinity);
  EXPECT_EQ(cellsAlong(0, 3e9F, 1), 3000000001.0);
  EXPECT_TRUE(std::isnan(cellsAlong(0, 0, 0)));
  EXPECT_TRUE(std::isnan(cellsAlong(0, kNan, 1)));
  EXPECT_TRUE(std::isnan(cellsAlong(0, 1, kNan)));
}

TEST(AerialGridSize, WidthIsAlongX) {
  const auto size = aerialGridSize({0, 0, 100, 50}, 1);
  ASSERT_TRUE(size);
  EXPECT_EQ(size->width, 101);
  EXPECT_EQ(size->height, 51);
}

TEST(AerialGridSize, ReversedByOneCellIsEmpty) {
  const auto size = aerialGridSize({1.5F, 0, 0, 50}, 1);
  ASSERT_TRUE(size);
  EXPECT_EQ(size->width, 0);
  EXPECT_EQ(size->height, 51);
}

// Two negative numbers would have a positive product.
TEST(AerialGridSize, NegativeSizesAreNoGrid) {
  EXPECT_FALSE(aerialGridSize({100, 0, 0, 50}, 1));
  EXPECT_FALSE(aerialGridSize({0, 50, 100, 0}, 1));
  EXPECT_FALSE(aerialGridSize({100, 50, 0, 0}, 1));
  EXPECT_FALSE(aerialGridSize({0, 0, 100, 50}, -1));
}

TEST(AerialGridSize, ReversedRegionAndNegativeResolutionMakeAGrid) {
  const auto size = aerialGridSize({100, 50, 0, 0}, -1);
  ASSERT_TRUE(size);
  EXPECT_EQ(size->width, 101);
  EXPECT_EQ(size->height, 51);
}

TEST(AerialGridSize, CellsBeyondIntAreNoGrid) {
  EXPECT_TRUE(aerialGridSize({0, 0, 46339, 46339}, 1));
  EXPECT_FALSE(aerialGridSize({0, 0, 46340, 46340}, 1));
  EXPECT_FALSE(aerialGridSize({0, 0, 3e9F, 0}, 1));
  EXPECT_FALSE(aerialGridSize({0, 0, 100, 50}, 0));
  EXPECT_FALSE(aerialGridSize({0, 0, 0, 0}, 0));
  EXPECT_FALSE(aerialGridSize({0, 0, 100, 50}, kNan));
  EXPECT_FALSE(aerialGridSize({0, kNan, 100, 50}, 1));
  EXPECT_FALSE(aerialGridSize({0, 0, kInfinity, 50}, 1));
}

} // namespace
} // namespace velmorn
