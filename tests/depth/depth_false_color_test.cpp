// Depths as colours.
#include "depth/depth_false_color.h"

#include <algorithm>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "depth/plain_aerial_view.h"
#include "support/memory_limit.h"

namespace velmorn {
namespace {

using Bytes = std::vector<unsigned char>;

// The cells' colours with a byte on either side, which must stay.
Bytes render(const std::vector<unsigned short>& depth, int width, int height) {
  Bytes guarded(3 * depth.size() + 2, 0xA5);
  EXPECT_EQ(renderDepthFalseColor(depth.data(), width, height, guarded.data() + 1), 0);
  EXPECT_EQ(guarded.front(), 0xA5);
  EXPECT_EQ(guarded.back(), 0xA5);
  return Bytes(guarded.begin() + 1, guarded.end() - 1);
}

TEST(DepthFalseColor, FourDepthsByHand) {
  // e = 1 * 255 / 4, 2 * 255 / 4, ... cut off: 63, 127, 191, 255
  const Bytes expected{0, 0, 0, 63, 126, 192, 255, 0, 0, 127, 254, 128, 191, 128, 64, 0, 0, 0};
  EXPECT_EQ(render({65535, 10, 65534, 500, 600, 65535}, 3, 2), expected);
}

TEST(DepthFalseColor, DepthZeroIsADepth) {
  const Bytes expected{127, 254, 128, 255, 0, 0};
  EXPECT_EQ(render({0, 65534}, 2, 1), expected);
}

TEST(DepthFalseColor, EmptyGridIsBlack) {
  EXPECT_EQ(render(std::vector<unsigned short>(5000, kEmptyCell), 100, 50), Bytes(15000, 0));
  EXPECT_EQ(render({}, 0, 7), Bytes());
}

TEST(DepthFalseColor, RandomGridsHaveThePlainBytes) {
  std::mt19937 random(11);
  for (int i = 0; i < 200; ++i) {
    const int width = 1 + static_cast<int>(random() % 130),
              height = 1 + static_cast<int>(random() % 50);
    const auto emptyIn100 = random() % 101, spread = 1 + random() % (i % 2 == 0 ? 9 : 65535);
    std::vector<unsigned short> depth(static_cast<std::size_t>(width * height));
    for (auto& cell : depth)
      cell =
          random() % 100 < emptyIn100 ? kEmptyCell : static_cast<unsigned short>(random() % spread);
    Bytes expected(3 * depth.size());
    plainFalseColor(depth.data(), width, height, expected.data());
    EXPECT_EQ(render(depth, width, height), expected) << width << " x " << height;
  }
}

// Grids of one row around the sizes of the blocks that are painted at a time, with as many covered
// cells as a block's output has room to list, and one more or less.
TEST(DepthFalseColor, BlocksHaveThePlainBytesAtAllTheirBorders) {
  std::mt19937 random(12);
  for (const int cells : {1, 2, 3, 4, 2047, 2048, 2049, 2050, 4095, 4096, 4097, 6143})
    for (const int covered : {0, 1, 2, 1534, 1535, 1536, 1537, 2047, 2048, cells})
      for (const bool coversLast : {false, true}) {
        std::vector<unsigned short> depth(static_cast<std::size_t>(cells), kEmptyCell);
        const auto end = depth.begin() + std::min(cells, covered);
        for (auto cell = depth.begin(); cell != end; ++cell)
          *cell = static_cast<unsigned short>(random() % 65535);
        if (coversLast) std::reverse(depth.begin(), depth.end());
        Bytes expected(3 * depth.size());
        plainFalseColor(depth.data(), cells, 1, expected.data());
        EXPECT_EQ(render(depth, cells, 1), expected) << cells << " cells, " << covered;
      }
}

// The larger blocks of large grids: empty, with room for their lists or not, covered, the last one
// of any length.
TEST(DepthFalseColor, LargeGridsHaveThePlainBytes) {
  std::mt19937 random(13);
  for (const int height : {1024, 1025, 1029, 1032}) {
    constexpr int kWidth = 1024;
    std::vector<unsigned short> depth(static_cast<std::size_t>(kWidth * height), kEmptyCell);
    for (std::size_t i = 0; i < depth.size(); ++i) {
      const std::size_t coveredIn5 = i / 8192 % 6;
      if (random() % 5 < coveredIn5) depth[i] = static_cast<unsigned short>(random() % 3000);
    }
    Bytes expected(3 * depth.size());
    plainFalseColor(depth.data(), kWidth, height, expected.data());
    EXPECT_TRUE(render(depth, kWidth, height) == expected) << height;
  }
}

// 17.6 million covered cells: the running count times 255 no longer fits into 32 bits, and the
// farthest cells come out near again.
TEST(DepthFalseColor, RunningCountWrapsAround) {
  constexpr int kSide = 4200;
  std::vector<unsigned short> depth(static_cast<std::size_t>(kSide) * kSide);
  for (std::size_t i = 0; i < depth.size(); ++i) depth[i] = static_cast<unsigned short>(i % 500);
  Bytes output(3 * depth.size()), expected(output.size());
  ASSERT_EQ(renderDepthFalseColor(depth.data(), kSide, kSide, output.data()), 0);
  plainFalseColor(depth.data(), kSide, kSide, expected.data());
  EXPECT_EQ(output, expected);
  EXPECT_EQ(output[3 * 499], 11); // (17 640 000 * 255 mod 2^32) / 17 640 000
}

#if defined(VELMORN_MEMORY_CAN_BE_LIMITED)
TEST(DepthFalseColor, NoMemoryLeavesTheOutputAlone) {
  const std::vector<unsigned short> depth(100, 7);
  Bytes output(300, 0xA5);
  int status = 0;
  {
    const NoLargeMemory none;
    status = renderDepthFalseColor(depth.data(), 10, 10, output.data());
  }
  EXPECT_EQ(status, -1);
  EXPECT_EQ(output, Bytes(300, 0xA5));
}
#endif

} // namespace
} // namespace velmorn
