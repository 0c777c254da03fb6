// Every form of the fill gives the sweeps' bytes.
#include "depth/background_fill.h"

#include <cstring>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "depth/plain_depth_background.h"

namespace velmorn {
namespace {

constexpr std::uint32_t kEmptyMark = 0x7FC12345; // NaN, so that only bits are compared

float ofBits(std::uint32_t bits) {
  float value;
  std::memcpy(&value, &bits, sizeof value);
  return value;
}

// Every seed has a value of its own, so that a wrong source shows.
PlainBackground randomSeeds(int width, int height, double density, unsigned seed) {
  std::mt19937 random(seed);
  std::bernoulli_distribution isSeed(density);
  PlainBackground b;
  b.width = width;
  b.height = height;
  b.cells.assign(static_cast<std::size_t>(width * height), 0);
  b.filled.assign(b.cells.size(), 0);
  for (std::size_t i = 0; i < b.cells.size(); ++i) b.filled[i] = isSeed(random);
  b.filled[random() % b.filled.size()] = 1;
  for (std::size_t i = 0; i < b.cells.size(); ++i)
    if (b.filled[i]) b.cells[i] = static_cast<float>(i + 1);
  return b;
}

std::vector<float> markedCells(const PlainBackground& b) {
  std::vector<float> cells = b.cells;
  for (std::size_t i = 0; i < cells.size(); ++i)
    if (!b.filled[i]) cells[i] = ofBits(kEmptyMark);
  return cells;
}

struct Filled {
  std::string form;
  bool ok;
  std::vector<float> cells;
};

// The grid filled by every form that this machine can run.
std::vector<Filled> fillByAllForms(int width, int height, const std::vector<float>& cells) {
  std::vector<Filled> all;
  const auto fill = [&](const std::string& form, auto&& filler) {
    all.push_back({form, false, cells});
    all.back().ok = filler.ready() && filler.fill(all.back().cells.data(), kEmptyMark);
  };
  fill("plain, long steps", LongGapFiller(width, height, plainLongFillKernels()));
  for (const auto level : {VectorLevel::kNone, VectorLevel::kAvx2, VectorLevel::kAvx512})
    if (level <= supportedVectorLevel())
      fill("level " + std::to_string(static_cast<int>(level)),
           ShortGapFiller(width, height, shortFillKernels(level)));
  return all;
}

void expectSweepsBytes(PlainBackground b, const std::string& what) {
  const std::vector<float> marked = markedCells(b);
  plainFillSweeps(b);
  for (const Filled& filled : fillByAllForms(b.width, b.height, marked)) {
    ASSERT_TRUE(filled.ok) << filled.form << ", " << what;
    ASSERT_EQ(std::memcmp(filled.cells.data(), b.cells.data(), 4 * b.cells.size()), 0)
        << filled.form << ", " << what;
  }
}

void expectSweepsBytes(int width, int height, double density, unsigned seed) {
  expectSweepsBytes(randomSeeds(width, height, density, seed),
                    std::to_string(width) + " x " + std::to_string(height) + ", density " +
                        std::to_string(density) + ", seed " + std::to_string(seed));
}

// All grids of up to twelve cells in all their patterns: every case of the precedence.
TEST(BackgroundFill, EveryPatternOfEverySmallGrid) {
  for (int width = 1; width <= 12; ++width) {
    for (int height = 1; width * height <= 12; ++height) {
      const unsigned cells = static_cast<unsigned>(width * height);
      for (unsigned pattern = 1; pattern < 1U << cells; ++pattern) {
        PlainBackground b;
        b.width = width;
        b.height = height;
        for (unsigned i = 0; i < cells; ++i) {
          b.filled.push_back(pattern >> i & 1);
          b.cells.push_back(b.filled.back() ? static_cast<float>(i + 1) : 0);
        }
        expectSweepsBytes(b, std::to_string(width) + " x " + std::to_string(height) + ", pattern " +
                                 std::to_string(pattern));
        if (HasFatalFailure()) return;
      }
    }
  }
}

TEST(BackgroundFill, RandomSmallGrids) {
  std::mt19937 random(5);
  for (unsigned i = 0; i < 6000; ++i) {
    const int width = 1 + static_cast<int>(random() % 70),
              height = 1 + static_cast<int>(random() % 70);
    const double densities[] = {0, 0.001, 0.01, 0.05, 0.2, 0.5, 0.9, 0.99};
    expectSweepsBytes(width, height, densities[i % 8], i);
    if (HasFatalFailure()) return;
  }
}

TEST(BackgroundFill, SingleRowsAndColumns) {
  for (int n = 1; n <= 140; ++n) {
    for (const double density : {0.0, 0.02, 0.3, 0.95}) {
      expectSweepsBytes(n, 1, density, 7U + static_cast<unsigned>(n));
      expectSweepsBytes(1, n, density, 8U + static_cast<unsigned>(n));
      if (HasFatalFailure()) return;
    }
  }
}

TEST(BackgroundFill, LargerGrids) {
  for (const double density : {0.0, 0.0001, 0.002, 0.05, 0.3, 0.9}) {
    expectSweepsBytes(300, 200, density, 1);
    expectSweepsBytes(199, 301, density, 2);
  }
}

// Seeds on a coarse lattice: every cell between four of them has several nearest seeds.
TEST(BackgroundFill, ManyEquallyNearSeeds) {
  for (int step = 2; step <= 9; ++step) {
    for (int slant = 0; slant < step; ++slant) {
      PlainBackground b = randomSeeds(67, 59, 0, 1);
      for (int row = 0; row < b.height; ++row) {
        for (int column = 0; column < b.width; ++column) {
          const std::size_t i = static_cast<std::size_t>(row * b.width + column);
          b.filled[i] = row % step == 0 && (column + slant * (row / step)) % step == 0;
          b.cells[i] = b.filled[i] ? static_cast<float>(i + 1) : 0;
        }
      }
      expectSweepsBytes(b, "step " + std::to_string(step) + ", slant " + std::to_string(slant));
    }
  }
}

// Seeds' values of any bits come out as they are.
TEST(BackgroundFill, ValuesAreCopied) {
  PlainBackground b = randomSeeds(41, 29, 0.1, 3);
  const std::uint32_t bits[] = {0x7F800001, 0xFFC00000, 0x80000000, 0x7F800000, 1, 0x7FC12344};
  for (std::size_t i = 0; i < b.cells.size(); ++i)
    if (b.filled[i]) b.cells[i] = ofBits(bits[i % 6]);
  expectSweepsBytes(b, "odd values");
}

// Steps of 16 bits reach from end to end of the largest grid that they are used for.
TEST(BackgroundFill, LongestDistanceOfShortSteps) {
  constexpr int kLong = static_cast<int>(kMostShortSteps) - 1;
  for (const bool tall : {false, true}) {
    for (const std::size_t at : {0, kLong - 1}) {
      std::vector<float> cells(kLong, ofBits(kEmptyMark));
      cells[at] = 7;
      for (const Filled& filled : fillByAllForms(tall ? 1 : kLong, tall ? kLong : 1, cells))
        EXPECT_EQ(filled.cells, std::vector<float>(kLong, 7)) << filled.form << ", " << tall;
    }
  }
  // One seed at each end: the middle has its own from below or from the right.
  std::vector<float> cells(kLong, ofBits(kEmptyMark)), expected(kLong, 2);
  cells.front() = 1;
  cells.back() = 2;
  for (int i = 0; i < kLong / 2; ++i) expected[static_cast<std::size_t>(i)] = 1;
  static_assert(kLong % 2 == 0, "no cell has both ends equally near");
  for (const Filled& filled : fillByAllForms(1, kLong, cells))
    EXPECT_EQ(filled.cells, expected) << filled.form;
  for (const Filled& filled : fillByAllForms(kLong, 1, cells))
    EXPECT_EQ(filled.cells, expected) << filled.form;
}

TEST(BackgroundFill, NothingToFillFrom) {
  const std::vector<float> empty(53 * 7, ofBits(kEmptyMark));
  for (const Filled& filled : fillByAllForms(53, 7, empty)) {
    EXPECT_FALSE(filled.ok) << filled.form;
    EXPECT_EQ(std::memcmp(filled.cells.data(), empty.data(), 4 * empty.size()), 0);
  }
}

} // namespace
} // namespace velmorn
