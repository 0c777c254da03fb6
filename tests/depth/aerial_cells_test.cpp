// The cells of an aerial view: cleared piece by piece.
#include "depth/aerial_cells.h"

#include <algorithm>
#include <numeric>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "depth/depth_false_color.h"

namespace velmorn {
namespace {

// Cells full of what was there before.
struct Grid {
  std::vector<std::uint16_t> nearest;
  std::vector<unsigned char> image;

  explicit Grid(std::size_t count) : nearest(count, 7), image(kColorBytes * count, 9) {}

  AerialCells cells(bool isColored) {
    return {nearest.data(), isColored ? image.data() : nullptr, nearest.size()};
  }
};

SampleList listOf(const std::vector<std::size_t>& cells) {
  SampleList list;
  for (const std::size_t cell : cells) list.cells[list.n++] = static_cast<std::int32_t>(cell);
  return list;
}

// Sizes that are cleared at once and ones that are not, no multiples of anything.
class CellClearingTest : public testing::TestWithParam<std::size_t> {};

TEST_P(CellClearingTest, ListedCellsAreClear) {
  const std::size_t count = GetParam();
  std::mt19937 random(1);
  for (const bool isColored : {false, true}) {
    Grid grid(count);
    CellClearing clearing(grid.cells(isColored), plainAerialKernels());
    for (int i = 0; i < 20; ++i) {
      const std::vector<std::size_t> cells{random() % count, random() % count, random() % count};
      clearing.clearFor(listOf(cells));
      for (const std::size_t cell : cells) {
        EXPECT_EQ(grid.nearest[cell], kEmptyCell);
        EXPECT_EQ(grid.image[3 * cell], isColored ? 0 : 9);
        EXPECT_EQ(grid.image[3 * cell + 2], isColored ? 0 : 9);
      }
    }
  }
}

// Lists walk up from the middle, then down from there, then jump to both ends; every cell is
// cleared once and keeps what it got since.
TEST_P(CellClearingTest, NoCellIsClearedTwice) {
  const std::size_t count = GetParam(), middle = count / 2;
  std::vector<std::size_t> touched;
  for (std::size_t cell = middle; cell < count - 20000; cell += 9999) touched.push_back(cell);
  for (std::size_t cell = middle; cell > 20000; cell -= 9998) touched.push_back(cell);
  touched.insert(touched.end(), {count - 1, 0, count - 2, 1});
  Grid grid(count);
  CellClearing clearing(grid.cells(true), plainAerialKernels());
  Grid expected(count);
  std::fill(expected.nearest.begin(), expected.nearest.end(), kEmptyCell);
  std::fill(expected.image.begin(), expected.image.end(), static_cast<unsigned char>(0));
  for (const std::size_t cell : touched) {
    clearing.clearFor(listOf({cell}));
    grid.nearest[cell] = expected.nearest[cell] = 500;
    grid.image[3 * cell + 1] = expected.image[3 * cell + 1] = 50;
  }
  clearing.clearFor(SampleList());
  clearing.clearRest();
  EXPECT_TRUE(grid.nearest == expected.nearest);
  EXPECT_TRUE(grid.image == expected.image);
}

TEST_P(CellClearingTest, WithoutSamplesTheRestIsAll) {
  Grid grid(GetParam());
  CellClearing clearing(grid.cells(true), plainAerialKernels());
  clearing.clearRest();
  const auto isEmpty = [](std::uint16_t depth) { return depth == kEmptyCell; };
  EXPECT_TRUE(std::all_of(grid.nearest.begin(), grid.nearest.end(), isEmpty));
  EXPECT_EQ(std::count(grid.image.begin(), grid.image.end(), 0),
            static_cast<std::ptrdiff_t>(grid.image.size()));
}

INSTANTIATE_TEST_SUITE_P(Sizes, CellClearingTest, testing::Values(50001, 1300007));

TEST(CellClearing, GridWithoutCells) {
  CellClearing clearing({nullptr, nullptr, 0}, plainAerialKernels());
  clearing.clearFor(SampleList());
  clearing.clearRest();
}

// Of equal depths the first one's colour stays, wherever in a list the two are.
TEST(TakeCells, NearestOfAListStays) {
  std::mt19937 random(4);
  for (int n = 0; n <= 40; ++n) {
    std::vector<unsigned char> pixels(kColorBytes * 40);
    std::iota(pixels.begin(), pixels.end(), static_cast<unsigned char>(0));
    SampleList list;
    list.color = pixels.data();
    std::vector<std::uint16_t> expected(5, kEmptyCell);
    std::vector<int> winner(5, -1);
    for (int i = 0; i < n; ++i) {
      const auto depth = static_cast<std::uint16_t>(1 + random() % 6);
      const std::size_t cell = random() % 5;
      list.samples[list.n] = listed(depth, i);
      list.cells[list.n++] = static_cast<std::int32_t>(cell);
      if (depth >= expected[cell]) continue;
      expected[cell] = depth;
      winner[cell] = i;
    }
    for (const bool isColored : {false, true})
      for (const bool isSparse : {false, true}) {
        Grid grid(5);
        AerialCells cells = grid.cells(isColored);
        cells.isSparse = isSparse;
        CellClearing(cells, plainAerialKernels()).clearRest();
        takeCells(list, cells);
        EXPECT_EQ(grid.nearest, expected) << n;
        for (std::size_t cell = 0; cell < 5 && isColored; ++cell)
          EXPECT_EQ(grid.image[3 * cell + 2], winner[cell] < 0 ? 0 : 3 * winner[cell] + 2) << n;
      }
  }
}

// The first of equally near samples stays, whatever its colour; a depth of 65535 is none.
TEST(TakeKeys, SmallestKeyOfAListStays) {
  std::mt19937 random(4);
  for (int n = 0; n <= 40; ++n) {
    KeyList list;
    std::vector<std::uint16_t> nearest(5, kEmptyCell);
    std::vector<std::uint32_t> expected(5, 0), found;
    for (int i = 0; i < n; ++i) {
      const auto depth = static_cast<std::uint16_t>(i % 9 == 0 ? kEmptyCell : 1 + random() % 6);
      const std::uint32_t color = random() & 0xFFFFFF;
      const std::size_t cell = random() % 5;
      list.keys[list.n] = sampleKey(depth, static_cast<std::uint32_t>(i), color);
      list.cells[list.n++] = static_cast<std::int32_t>(cell);
      if (depth >= nearest[cell]) continue;
      nearest[cell] = depth;
      expected[cell] = color;
    }
    std::vector<SampleKey> cells(5, kEmptyKey);
    takeKeys(list, cells.data());
    for (const SampleKey& cell : cells)
      found.push_back(static_cast<std::uint32_t>(cell & 0xFFFFFF));
    EXPECT_EQ(found, expected) << n;
  }
}

} // namespace
} // namespace velmorn
