// The board as the user describes it.
#include "velmorn/board.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace velmorn::tool {
namespace {

TEST(Board, ReadsCornersPerRowThenPerColumn) {
  const auto board = parseBoard("9x6");
  ASSERT_TRUE(board);
  EXPECT_EQ(board->width, 9);
  EXPECT_EQ(board->height, 6);
}

TEST(Board, AcceptsTheLimits) {
  EXPECT_TRUE(parseBoard("3x3"));
  EXPECT_TRUE(parseBoard("1000x1000"));
}

TEST(Board, RefusesOtherForms) {
  for (const char* text : {"", "9", "x", "9x", "x6", "2x6", "9x2", "1001x6", "9x99999999999",
                           "-9x6", "9X6", "9x6x3", " 9x6", "9 x 6", "9.0x6", "+9x6"}) {
    EXPECT_FALSE(parseBoard(text)) << text;
  }
}

TEST(Board, RefusesSquaresThatTheLibraryCannotTake) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  for (const double side : {0.0, -1.0, kInfinity, -kInfinity, std::nan(""), 1e300, 1e-300}) {
    EXPECT_FALSE(usableSquare(side)) << side;
  }
  EXPECT_EQ(usableSquare(25), 25.0F);
}

TEST(Board, PointsRunAlongTheRows) {
  const std::vector<cv::Point3f> points = boardPoints({3, 4}, 2);
  ASSERT_EQ(points.size(), 12U);
  EXPECT_EQ(points[0], cv::Point3f(0, 0, 0));
  EXPECT_EQ(points[2], cv::Point3f(4, 0, 0));
  EXPECT_EQ(points[3], cv::Point3f(0, 2, 0));
  EXPECT_EQ(points[11], cv::Point3f(4, 6, 0));
}

TEST(Sides, StayWithinTheLimits) {
  EXPECT_EQ(parseSides("2x200", 2, 200)->height, 200);
  EXPECT_FALSE(parseSides("1x200", 2, 200));
  EXPECT_FALSE(parseSides("2x201", 2, 200));
}

} // namespace
} // namespace velmorn::tool
