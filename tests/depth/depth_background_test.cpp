// The exported depth background: values by hand, status codes, hostile inputs.
#include <cmath>
#include <cstring>
#include <limits>
#include <vector>

#include <gtest/gtest.h>

#include "depth/background_scenes.h"
#include "depth/plain_depth_background.h"
#include "support/memory_limit.h"
#include "support/temp_dir.h"
#include "velmorn64.h"

namespace velmorn {
namespace {

using Points = std::vector<tagOzKPoint3Df32>;
using Cells = std::vector<float>;

constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
constexpr float kInfinity = std::numeric_limits<float>::infinity();
constexpr float kForeign = -777; // what the caller's memory held before
constexpr int kMaxGridSize = 20;

class DepthBackground : public TempDirTest {
 protected:
  int call(Points points) {
    return bulidDepthBackgroundByPointCloud(
        points.empty() ? nullptr : points.data(), static_cast<int>(points.size()), cellSize,
        &region, background.data(), &width, &height, keepHighest, minPointCount, maxGridSize);
  }

  // The background of a call that succeeds.
  Cells cellsOf(const Points& points) {
    EXPECT_EQ(call(points), kOzkSuccess);
    return {background.begin(), background.begin() + width * height};
  }

  void expectUntouched() {
    EXPECT_EQ(background, Cells(background.size(), kForeign));
    EXPECT_EQ(width, -5);
    EXPECT_EQ(height, -6);
  }

  float cellSize = 1;
  tagOzKRect2Df32 region{0, 0, 2, 2}; // 3 x 3 cells
  Cells background = Cells(kMaxGridSize * kMaxGridSize, kForeign);
  int width = -5, height = -6;
  int keepHighest = 0, minPointCount = 0, maxGridSize = kMaxGridSize;
};

TEST_F(DepthBackground, EveryCellHasItsPoint) {
  Points points;
  Cells expected;
  for (int i = 0; i < 9; ++i) {
    points.push_back({static_cast<float>(i % 3), static_cast<float>(i / 3), static_cast<float>(i)});
    expected.push_back(static_cast<float>(i));
  }
  EXPECT_EQ(cellsOf(points), expected);
  EXPECT_EQ(width, 3);
  EXPECT_EQ(height, 3);
}

TEST_F(DepthBackground, LowestOrHighestOfACell) {
  const Points points{{1.5F, 1.2F, 5}, {1.1F, 1.9F, 3}, {1, 1, 4}};
  EXPECT_EQ(cellsOf(points), Cells(9, 3));
  keepHighest = 1;
  EXPECT_EQ(cellsOf(points), Cells(9, 5));
  keepHighest = -8;
  EXPECT_EQ(cellsOf(points), Cells(9, 5));
}

TEST_F(DepthBackground, WidthIsAlongXAndWrittenInRows) {
  region = {10, 20, 11, 23};
  EXPECT_EQ(cellsOf({{11, 20, 7}, {10, 23, 8}}), (Cells{7, 7, 8, 7, 8, 8, 8, 8}));
  EXPECT_EQ(width, 2);
  EXPECT_EQ(height, 4);
}

TEST_F(DepthBackground, OnePointFillsTheGrid) {
  region = {-4, -4, 4, 4};
  EXPECT_EQ(cellsOf({{-4, 4, 6.25F}}), Cells(81, 6.25F));
}

TEST_F(DepthBackground, EdgesAreInclusive) {
  EXPECT_EQ(cellsOf({{2, 2, 1}, {0, 0, 2}, {2, 0, 3}, {0, 2, 4}}),
            (Cells{2, 3, 3, 4, 1, 1, 4, 1, 1}));
  const float outside = std::nextafter(2.0F, 3.0F), before = -1e-30F;
  for (const tagOzKPoint3Df32& p :
       Points{{outside, 1, 1}, {1, outside, 1}, {before, 1, 1}, {1, before, 1}})
    EXPECT_EQ(call({p}), kOzkNoPointInRegion);
}

TEST_F(DepthBackground, BelowGoesBeforeRightLeftAbove) {
  const auto middle = [&](const Points& points) { return cellsOf(points)[4]; };
  EXPECT_EQ(middle({{1, 2, 1}, {2, 1, 2}, {0, 1, 3}, {1, 0, 4}}), 1);
  EXPECT_EQ(middle({{2, 1, 2}, {0, 1, 3}, {1, 0, 4}}), 2);
  EXPECT_EQ(middle({{0, 1, 3}, {1, 0, 4}}), 3);
  EXPECT_EQ(middle({{1, 0, 4}}), 4);
}

TEST_F(DepthBackground, NumbersThatAreNone) {
  region = {0, 0, 0, 0};
  EXPECT_EQ(cellsOf({{0, 0, 1}, {0, 0, kNan}, {0, 0, 2}}), Cells{1});
  EXPECT_TRUE(std::isnan(cellsOf({{0, 0, kNan}, {0, 0, 2}})[0]));
  EXPECT_EQ(cellsOf({{0, 0, kInfinity}}), Cells{kInfinity});
  EXPECT_EQ(cellsOf({{0, 0, 3}, {0, 0, -kInfinity}}), Cells{-kInfinity});
  EXPECT_FALSE(std::signbit(cellsOf({{0, 0, 0.0F}, {0, 0, -0.0F}})[0]));
  keepHighest = 1;
  EXPECT_TRUE(std::signbit(cellsOf({{0, 0, -0.0F}, {0, 0, 0.0F}})[0]));
  EXPECT_EQ(call({{kNan, 0, 1}, {0, kNan, 1}, {kInfinity, 0, 1}, {0, -kInfinity, 1}}),
            kOzkNoPointInRegion);
}

TEST_F(DepthBackground, TooFewPointsComeFirst) {
  minPointCount = 2;
  EXPECT_EQ(call({{1, 1, 1}}), kOzkTooFewPoints);
  EXPECT_EQ(
      bulidDepthBackgroundByPointCloud(nullptr, 1, 0, nullptr, nullptr, nullptr, nullptr, 0, 2, 0),
      kOzkTooFewPoints);
  expectUntouched();
  // Counted in the region or not.
  EXPECT_EQ(call({{1, 1, 1}, {50, 1, 1}}), kOzkSuccess);
}

TEST_F(DepthBackground, NullPointers) {
  tagOzKPoint3Df32 point{1, 1, 1};
  const auto with = [&](tagOzKPoint3Df32* points, tagOzKRect2Df32* area, float* out, int* w,
                        int* h) {
    return bulidDepthBackgroundByPointCloud(points, 1, 1, area, out, w, h, 0, 0, kMaxGridSize);
  };
  EXPECT_EQ(with(nullptr, &region, background.data(), &width, &height), kOzkNullPointer);
  EXPECT_EQ(with(&point, nullptr, background.data(), &width, &height), kOzkNullPointer);
  EXPECT_EQ(with(&point, &region, nullptr, &width, &height), kOzkNullPointer);
  EXPECT_EQ(with(&point, &region, background.data(), nullptr, &height), kOzkNullPointer);
  EXPECT_EQ(with(&point, &region, background.data(), &width, nullptr), kOzkNullPointer);
  expectUntouched();
}

TEST_F(DepthBackground, GridTooLarge) {
  const Points points{{0, 0, 1}};
  maxGridSize = 2;
  EXPECT_EQ(call(points), kOzkGridTooLarge);
  region = {0, 0, 0, 2};
  EXPECT_EQ(call(points), kOzkGridTooLarge);
  region = {0, 0, 2, 0};
  EXPECT_EQ(call(points), kOzkGridTooLarge);
  maxGridSize = std::numeric_limits<int>::max();
  region = {0, 0, 3e9F, 0};
  EXPECT_EQ(call(points), kOzkGridTooLarge);
  region = {0, 0, kInfinity, 0};
  EXPECT_EQ(call(points), kOzkGridTooLarge);
  region = {-3e38F, 0, 3e38F, 0};
  EXPECT_EQ(call(points), kOzkGridTooLarge);
  region = {0, 0, 2, 2};
  cellSize = 0;
  EXPECT_EQ(call(points), kOzkGridTooLarge);
  expectUntouched();
}

TEST_F(DepthBackground, EmptyGrid) {
  const Points points{{0, 0, 1}};
  for (const tagOzKRect2Df32& reversed : {tagOzKRect2Df32{1, 0, 0, 0},
                                          {0, 1.5F, 0, 0},
                                          {9, 0, 0, 0},
                                          {9, 9, 0, 0},
                                          {kNan, 0, 2, 2},
                                          {0, 0, 2, kNan}}) {
    region = reversed;
    EXPECT_EQ(call(points), kOzkGridEmpty);
  }
  region = {0, 0, 2, 2};
  cellSize = -1;
  EXPECT_EQ(call(points), kOzkGridEmpty);
  cellSize = kNan;
  EXPECT_EQ(call(points), kOzkGridEmpty);
  // Nothing divided by nothing.
  cellSize = 0;
  region = {1, 1, 1, 1};
  EXPECT_EQ(call(points), kOzkGridEmpty);
  // A grid without cells may be too large too; that comes first.
  cellSize = 1;
  region = {1, 0, 0, 90};
  EXPECT_EQ(call(points), kOzkGridTooLarge);
  expectUntouched();
}

TEST_F(DepthBackground, SlightlyReversedRegionIsOneCellThatNoPointHits) {
  region = {0.5F, 0, 0, 0};
  EXPECT_EQ(call({{0.2F, 0, 1}, {0, 0, 1}, {0.5F, 0, 1}}), kOzkNoPointInRegion);
  EXPECT_EQ(width, 1);
  EXPECT_EQ(height, 1);
}

TEST_F(DepthBackground, NoPointInTheRegionLeavesZeros) {
  const int cells = 9;
  for (const Points& points : {Points{}, Points{{5, 5, 5}}, Points(40, {-1, 1, 1})}) {
    background.assign(background.size(), kForeign);
    EXPECT_EQ(call(points), kOzkNoPointInRegion);
    EXPECT_EQ(width, 3);
    EXPECT_EQ(height, 3);
    EXPECT_EQ(Cells(background.begin(), background.begin() + cells), Cells(cells, 0));
    EXPECT_EQ(background[cells], kForeign);
  }
}

TEST_F(DepthBackground, NegativeCountIsNoPoint) {
  for (const int count : {-3, std::numeric_limits<int>::min()})
    EXPECT_EQ(bulidDepthBackgroundByPointCloud(nullptr, count, cellSize, &region, background.data(),
                                               &width, &height, 0, count, kMaxGridSize),
              kOzkNoPointInRegion);
}

// The number that marks empty cells inside is a z like any other.
TEST_F(DepthBackground, PointsMayHaveTheBitsOfTheEmptyMark) {
  const std::uint32_t bits = 0xF2A9C35B;
  float mark;
  std::memcpy(&mark, &bits, sizeof mark);
  region = {0, 0, 2, 0};
  EXPECT_EQ(cellsOf({{0, 0, mark}, {2, 0, 1}, {2, 0, mark}}), (Cells{mark, mark, mark}));
  keepHighest = 1;
  EXPECT_EQ(cellsOf({{0, 0, mark}, {2, 0, 1}, {2, 0, mark}, {0, 0, kNan}}), (Cells{mark, 1, 1}));
}

TEST_F(DepthBackground, RandomScenesGiveThePlainBytes) {
  background.resize(300 * 300);
  maxGridSize = 300;
  for (unsigned seed = 0; seed < 150; ++seed) {
    std::mt19937 random(seed);
    const int columns = 1 + static_cast<int>(random() % 150);
    const int rows = 1 + static_cast<int>(random() % 150);
    region = regionOf(columns, rows);
    cellSize = seed % 2 ? 1.0F : 0.7F;
    keepHighest = static_cast<int>(seed / 2 % 2);
    const int cells = columns * rows;
    const int counts[] = {1, 5, 1 + cells / 50, cells, 4 * cells};
    Points points = scatteredPoints(counts[seed % 5], columns, rows, seed % 3 ? 0.0F : 2.0F, seed);
    points.push_back({region.x2, region.y2, 77});
    PlainBackground plain = plainBinnedCells(points, cellSize, region, keepHighest != 0);
    plainFillSweeps(plain);
    ASSERT_EQ(call(points), kOzkSuccess);
    ASSERT_EQ(width, plain.width);
    ASSERT_EQ(height, plain.height);
    ASSERT_EQ(std::memcmp(background.data(), plain.cells.data(), 4 * plain.cells.size()), 0)
        << "seed " << seed;
  }
}

// Wider than the vector forms go.
TEST_F(DepthBackground, LongGridsGiveThePlainBytes) {
  constexpr int kLong = 70001;
  for (const bool tall : {false, true}) {
    region = tall ? regionOf(2, kLong) : regionOf(kLong, 2);
    background.assign(2 * kLong, kForeign);
    maxGridSize = kLong;
    const Points points = scatteredPoints(900, tall ? 2 : kLong, tall ? kLong : 2, 0, 4);
    PlainBackground plain = plainBinnedCells(points, 1, region, false);
    plainFillSweeps(plain);
    EXPECT_EQ(cellsOf(points), plain.cells);
  }
}

// More bytes than there are addresses.
TEST_F(DepthBackground, GridBeyondAllMemory) {
  region = {0, 0, 2147483520.0F, 2147483520.0F};
  maxGridSize = std::numeric_limits<int>::max();
  EXPECT_EQ(call({{0, 0, 1}}), kOzkNoGridMemory);
  EXPECT_EQ(width, 2147483521);
  EXPECT_EQ(height, 2147483521);
  EXPECT_EQ(background, Cells(background.size(), kForeign));
}

#if defined(VELMORN_MEMORY_CAN_BE_LIMITED)
TEST_F(DepthBackground, NoMemoryForTheGrid) {
  maxGridSize = 40000;
  for (const int side : {20000, 40000}) {
    region = regionOf(side, side);
    {
      const MemoryLimit limit(100 << 20);
      EXPECT_EQ(call({{0, 0, 1}}), kOzkNoGridMemory);
    }
    EXPECT_EQ(width, side);
    EXPECT_EQ(height, side);
    EXPECT_EQ(background, Cells(background.size(), kForeign));
  }
}
#endif

TEST_F(DepthBackground, NothingIsSaid) {
  const ConsoleCapture console;
  EXPECT_EQ(call({{1, 1, 1}}), kOzkSuccess);
  EXPECT_EQ(call({}), kOzkNoPointInRegion);
  EXPECT_EQ(console.text(), "");
  EXPECT_TRUE(logLines().empty());
}

} // namespace
} // namespace velmorn
