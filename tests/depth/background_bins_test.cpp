// Every form of the binning gives the plain reference's bytes.
#include "depth/background_bins.h"

#include <cmath>
#include <cstring>
#include <limits>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "depth/background_scenes.h"
#include "depth/plain_depth_background.h"

namespace velmorn {
namespace {

using Points = std::vector<tagOzKPoint3Df32>;

constexpr std::uint32_t kEmptyMark = 0xF2345678;
constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
constexpr float kInfinity = std::numeric_limits<float>::infinity();

float ofBits(std::uint32_t bits) {
  float value;
  std::memcpy(&value, &bits, sizeof value);
  return value;
}

std::uint32_t toBits(float value) {
  std::uint32_t bits;
  std::memcpy(&bits, &value, sizeof bits);
  return bits;
}

std::vector<VectorLevel> runnableLevels() {
  std::vector<VectorLevel> levels;
  for (const auto level : {VectorLevel::kNone, VectorLevel::kAvx2, VectorLevel::kAvx512})
    if (level <= supportedVectorLevel()) levels.push_back(level);
  return levels;
}

void expectPlainBytes(const tagOzKPoint3Df32* first, int n, float cellSize,
                      const tagOzKRect2Df32& region) {
  const Points points(first, first + n);
  for (const bool keepHighest : {false, true}) {
    const PlainBackground plain = plainBinnedCells(points, cellSize, region, keepHighest);
    std::vector<float> expected = plain.cells;
    for (std::size_t i = 0; i < expected.size(); ++i)
      if (!plain.filled[i]) expected[i] = ofBits(kEmptyMark);
    for (const VectorLevel level : runnableLevels()) {
      std::vector<float> cells(expected.size(), ofBits(kEmptyMark));
      EXPECT_TRUE(binPointsForm(level)(first, n, {region, cellSize, plain.width}, keepHighest,
                                       kEmptyMark, cells.data()));
      ASSERT_EQ(std::memcmp(cells.data(), expected.data(), 4 * cells.size()), 0)
          << "level " << static_cast<int>(level) << ", " << n << " points";
    }
  }
}

void expectPlainBytes(const Points& points, float cellSize, const tagOzKRect2Df32& region) {
  expectPlainBytes(points.data(), static_cast<int>(points.size()), cellSize, region);
}

TEST(BackgroundBins, EverySmallCount) {
  for (int n = 0; n <= 70; ++n)
    expectPlainBytes(scatteredPoints(n, 5, 3, 0.5F, 1), 1, regionOf(5, 3));
}

TEST(BackgroundBins, LargeCounts) {
  for (const int n : {255, 256, 257, 511, 1000, 4099}) {
    expectPlainBytes(scatteredPoints(n, 20, 30, 2, 2), 1, regionOf(20, 30));
    expectPlainBytes(scatteredPoints(n, 20, 30, 0, 3), 0.37F, regionOf(20, 30));
    expectPlainBytes(scatteredPoints(n, 2, 2, 0, 4), 1, regionOf(2, 2));
  }
}

// Sixteen starts are all that points can have in a line of the cache.
TEST(BackgroundBins, WhereverThePointsBegin) {
  const Points points = scatteredPoints(700, 9, 8, 1, 7);
  for (int first = 0; first < 16; ++first)
    for (const int n : {0, 1, 15, 16, 17, 40, 127, 128, 129, 160, 300, 684})
      expectPlainBytes(points.data() + first, n, 1, regionOf(9, 8));
}

TEST(BackgroundBins, ValuesThatAreNoNumbers) {
  Points points = scatteredPoints(3000, 9, 8, 1, 5);
  const float odd[] = {kNan,  kInfinity,          -kInfinity,         0.0F,
                       -0.0F, ofBits(0x7F800001), ofBits(0xFFC01234), 1e-40F};
  for (std::size_t i = 0; i < points.size(); ++i) {
    if (i % 3 == 0) points[i].z = odd[i / 3 % 8];
    if (i % 17 == 0) points[i].x = odd[i / 17 % 8];
    if (i % 19 == 0) points[i].y = odd[i / 19 % 8];
  }
  expectPlainBytes(points, 1, regionOf(9, 8));
}

// Points on and next to the edges, in regions where the division rounds up: no index leaves the
// grid (the sanitizers watch).
TEST(BackgroundBins, EdgesOfAwkwardRegions) {
  const float cellSizes[] = {0.1F, 0.3F, 1.0F / 3, 0.7F, 1e-3F, 3e7F};
  std::mt19937 random(9);
  for (int i = 0; i < 400; ++i) {
    const float cellSize = cellSizes[i % 6];
    std::uniform_real_distribution<float> from(-100 * cellSize, 100 * cellSize);
    std::uniform_real_distribution<float> size(0, 60 * cellSize);
    tagOzKRect2Df32 region{from(random), from(random), 0, 0};
    region.x2 = region.x1 + size(random);
    region.y2 = region.y1 + size(random);
    Points points;
    for (const float x :
         {region.x1, region.x2, std::nextafter(region.x1, kInfinity),
          std::nextafter(region.x2, -kInfinity), std::nextafter(region.x2, kInfinity)})
      for (const float y : {region.y1, region.y2, std::nextafter(region.y1, -kInfinity),
                            std::nextafter(region.y2, -kInfinity)})
        points.push_back({x, y, static_cast<float>(points.size())});
    expectPlainBytes(points, cellSize, region);
  }
}

TEST(BackgroundBins, NegativeCellSizeWithOneCell) {
  expectPlainBytes(scatteredPoints(100, 1, 1, 0.4F, 6), -1, {0, 0, 0.3F, 0.2F});
}

// Wherever the point stands: in a vector, in the rest, outside.
TEST(BackgroundBins, PointWithTheMarkIsNoticedInTheRegionOnly) {
  for (std::size_t at = 0; at < 70; ++at) {
    for (const VectorLevel level : runnableLevels()) {
      Points points = scatteredPoints(70, 5, 3, 0, 1);
      points[at].z = ofBits(kEmptyMark);
      std::vector<float> cells(15, ofBits(kEmptyMark));
      const auto bin = [&] {
        return binPointsForm(level)(points.data(), 70, {regionOf(5, 3), 1, 5}, true, kEmptyMark,
                                    cells.data());
      };
      EXPECT_FALSE(bin()) << at;
      points[at].y = kNan;
      EXPECT_TRUE(bin()) << at;
    }
  }
}

TEST(UnusedBits, NoPointHasThem) {
  EXPECT_EQ(unusedBits(nullptr, 0), 0U);
  Points points;
  for (std::uint32_t upper = 0; upper < 256; ++upper)
    for (std::uint32_t lower = 0; lower < 256; ++lower)
      points.push_back({0, 0, ofBits(upper << 24 | lower)});
  points.push_back({0, 0, ofBits(0x00010000)});
  std::set<std::uint32_t> used;
  for (const tagOzKPoint3Df32& p : points) used.insert(toBits(p.z));
  const std::uint32_t bits = unusedBits(points.data(), static_cast<int>(points.size()));
  EXPECT_EQ(used.count(bits), 0U);
  EXPECT_EQ(used.size(), points.size());
}

} // namespace
} // namespace velmorn
