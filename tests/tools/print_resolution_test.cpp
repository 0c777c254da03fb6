// The resolution of a board's picture.
#include "velmorn/print_resolution.h"

#include <gtest/gtest.h>

#include <cmath>

namespace velmorn::tool {
namespace {

PrintedBoard codeBoard(double square) { return {{10, 10, square}, false}; }

bool isWhole(double number) { return std::abs(number - std::round(number)) < 1e-9; }

TEST(PrintResolution, TakesTheNextOneWithWholePixels) {
  // 236.2 pixels per square at 300 dpi; a code of 12 modules and its margins take 240.
  const PrintResolution resolution = resolutionNear(codeBoard(20), 12, 300);
  EXPECT_TRUE(resolution.wholePixels);
  EXPECT_NEAR(resolution.pixelsPerMillimetre, 12, 1e-12);
  EXPECT_NEAR(resolution.dpi(), 304.8, 1e-9);
  EXPECT_NEAR(resolution.pixelsPerModule, 15, 1e-12);
}

TEST(PrintResolution, MarginsOfTheCodesAreWholeToo) {
  for (const int modules : {10, 12, 14, 16, 18, 20, 22, 24})
    for (const double dpi : {150.0, 300.0, 600.0, 1200.0}) {
      const PrintResolution resolution = resolutionNear(codeBoard(25), modules, dpi);
      if (!resolution.wholePixels) continue;
      const double square = 25 * resolution.pixelsPerMillimetre;
      EXPECT_TRUE(isWhole(resolution.pixelsPerModule)) << modules << ' ' << dpi;
      EXPECT_TRUE(isWhole(square / 8)) << modules << ' ' << dpi;
      EXPECT_NEAR(resolution.dpi() / dpi, 1, 0.1);
    }
}

TEST(PrintResolution, StaysWhereWholePixelsAreFar) {
  const PrintResolution resolution = resolutionNear(codeBoard(3), 12, 100);
  EXPECT_FALSE(resolution.wholePixels);
  EXPECT_NEAR(resolution.dpi(), 100, 1e-9);
  EXPECT_NEAR(resolution.pixelsPerModule, 0.738, 1e-3);
}

TEST(PrintResolution, PlainBoardNeedsWholeSquaresOnly) {
  const PrintResolution resolution = resolutionNear({{10, 10, 20}, true}, 0, 300);
  EXPECT_TRUE(resolution.wholePixels);
  EXPECT_NEAR(resolution.pixelsPerMillimetre, 236 / 20.0, 1e-12);
  EXPECT_EQ(resolution.pixelsPerModule, 0);
}

} // namespace
} // namespace velmorn::tool
