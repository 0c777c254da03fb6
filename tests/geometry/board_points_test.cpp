#include "geometry/board_points.h"

#include <gtest/gtest.h>

namespace velmorn {
namespace {

TEST(BoardPoints, RowByRow) {
  const std::vector<cv::Point3f> points = boardPoints({9, 6}, 20);
  ASSERT_EQ(points.size(), 54U);
  EXPECT_EQ(points[0], cv::Point3f(0, 0, 0));
  EXPECT_EQ(points[1], cv::Point3f(20, 0, 0));
  EXPECT_EQ(points[9], cv::Point3f(0, 20, 0));
  EXPECT_EQ(points[53], cv::Point3f(160, 100, 0));
}

TEST(BoardPoints, NoSizeNoPoints) {
  EXPECT_TRUE(boardPoints({0, 6}, 20).empty());
  EXPECT_TRUE(boardPoints({9, -1}, 20).empty());
}

} // namespace
} // namespace velmorn
