// The text of a code, and the seed made of it.
#include "datacode/code_content.h"

#include <limits>

#include <gtest/gtest.h>

namespace velmorn {
namespace {

constexpr int kSmallest = std::numeric_limits<int>::min();
constexpr std::int32_t kCorners[8] = {10, 40, 11, 21, 30, 20, 31, 41};

TEST(CodeContent, ThreeNumbers) {
  const CodeContent content = parseCodeContent("12,-7,20.5");
  EXPECT_EQ(content.a, 12);
  EXPECT_EQ(content.b, -7);
  EXPECT_EQ(content.squareSize, 20.5F);
}

TEST(CodeContent, WhatCannotBeReadStaysZero) {
  for (const char* text : {"", "x", ",", "%s%n,%d", "\xFF\xFE"}) {
    const CodeContent content = parseCodeContent(text);
    EXPECT_EQ(content.a, 0) << text;
    EXPECT_EQ(content.b, 0) << text;
    EXPECT_EQ(content.squareSize, 0) << text;
  }
  const CodeContent onlyFirst = parseCodeContent("4;5,6");
  EXPECT_EQ(onlyFirst.a, 4);
  EXPECT_EQ(onlyFirst.b, 0);
  const CodeContent noSize = parseCodeContent("4,5,mm");
  EXPECT_EQ(noSize.b, 5);
  EXPECT_EQ(noSize.squareSize, 0);
}

TEST(CodeContent, WhatFollowsIsIgnored) { EXPECT_EQ(parseCodeContent("1,2,3 mm").squareSize, 3); }

TEST(CodeSeed, CornersGoRoundTheSquareFromTheLowerLeft) {
  const CalibCornerSet seed = seedFromCode({3, 5, 20}, kCorners);
  const float worldX[4] = {40, 40, 60, 60}, worldY[4] = {100, 80, 80, 100};
  ASSERT_EQ(seed.count, 4);
  for (int k = 0; k < 4; ++k) {
    EXPECT_EQ(seed.worldX[k], worldX[k]) << k;
    EXPECT_EQ(seed.worldY[k], worldY[k]) << k;
    EXPECT_EQ(seed.column[k], static_cast<float>(kCorners[2 * k])) << k;
    EXPECT_EQ(seed.row[k], static_cast<float>(kCorners[2 * k + 1])) << k;
  }
}

TEST(CodeSeed, FirstSquareStartsAtTheOrigin) {
  const CalibCornerSet seed = seedFromCode({1, 1, 10}, kCorners);
  EXPECT_EQ(seed.worldX[0], 0);
  EXPECT_EQ(seed.worldY[0], 10);
  EXPECT_EQ(seed.worldX[1], 0);
  EXPECT_EQ(seed.worldY[1], 0);
}

// 16777217 has no float of its own: the whole number is formed first, then rounded.
TEST(CodeSeed, WholeNumbersAreFormedBeforeTheyAreRounded) {
  const CalibCornerSet seed = seedFromCode({16777219, 16777218, 0.1F}, kCorners);
  EXPECT_EQ(seed.worldX[0], 16777218.0F * 0.1F);
  EXPECT_EQ(seed.worldX[2], 16777220.0F * 0.1F);
  EXPECT_EQ(seed.worldY[1], 16777216.0F * 0.1F);
}

TEST(CodeSeed, SmallestNumberHasAPredecessor) {
  const CalibCornerSet seed = seedFromCode({kSmallest, kSmallest, 1}, kCorners);
  EXPECT_EQ(seed.worldX[0], 2147483648.0F);
  EXPECT_EQ(seed.worldX[2], -2147483648.0F);
}

TEST(CodeSeed, WhatIsNotASeedIsZero) {
  const CalibCornerSet seed = seedFromCode({3, 5, 20}, kCorners);
  for (int i = 4; i < kCalibCornerSetCapacity; ++i) {
    EXPECT_EQ(seed.row[i], 0);
    EXPECT_EQ(seed.column[i], 0);
    EXPECT_EQ(seed.worldX[i], 0);
    EXPECT_EQ(seed.worldY[i], 0);
  }
}

} // namespace
} // namespace velmorn
