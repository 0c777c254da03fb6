// Conversions to whole numbers that no value makes undefined.
#include "foundation/truncation.h"

#include <gtest/gtest.h>

namespace velmorn {
namespace {

constexpr int kSmallest = std::numeric_limits<int>::min();
constexpr int kLargest = std::numeric_limits<int>::max();

TEST(TruncatedToInt, TowardZero) {
  EXPECT_EQ(truncatedToInt(2.9), 2);
  EXPECT_EQ(truncatedToInt(-2.9), -2);
  EXPECT_EQ(truncatedToInt(-0.5), 0);
}

TEST(TruncatedToInt, EdgesOfInt) {
  EXPECT_EQ(truncatedToInt(2147483647.9), kLargest);
  EXPECT_EQ(truncatedToInt(-2147483648.9), kSmallest);
  EXPECT_EQ(truncatedToInt(-2147483647.0), -kLargest);
}

TEST(TruncatedToInt, WhatAnIntCannotHoldIsTheSmallest) {
  EXPECT_EQ(truncatedToInt(2147483648.0), kSmallest);
  EXPECT_EQ(truncatedToInt(-3e9), kSmallest);
  EXPECT_EQ(truncatedToInt(std::numeric_limits<double>::quiet_NaN()), kSmallest);
  EXPECT_EQ(truncatedToInt(std::numeric_limits<double>::infinity()), kSmallest);
}

} // namespace
} // namespace velmorn
