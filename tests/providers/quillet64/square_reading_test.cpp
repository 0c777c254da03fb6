// One white square and its code.
#include "quillet64/square_reading.h"

#include <string>

#include <gtest/gtest.h>
#include <opencv2/imgproc.hpp>

#include "providers/quillet64/code_squares.h"
#include "quillet64/whole_image_scan.h"
#include "velmorn/data_matrix.h"

namespace velmorn::quillet {
namespace {

std::optional<SquareText> read(const DrawnSquare& drawn, ReadingBudget& budget) {
  const auto look = lookAtSquare(drawn.grey, drawn.quad);
  return look ? readSquare(drawn.grey, drawn.quad, *look, budget) : std::nullopt;
}

TEST(SquareReading, ReadsEverySizeInEveryTurn) {
  for (const int modules : {12, 14, 16})
    for (int turns = 0; turns < 4; ++turns) {
      DrawnSquare drawn = drawnSquare(tool::dataMatrix("3,5,7", modules), modules == 14 ? 112 : 64);
      drawn.quad = turnedQuad(drawn.quad, turns);
      ReadingBudget budget;
      const auto found = read(drawn, budget);
      ASSERT_TRUE(found) << modules;
      EXPECT_EQ(found->text, "3,5,7");
      EXPECT_EQ(found->turns, (4 - turns) % 4);
    }
}

TEST(SquareReading, BlurOfManyPixelsIsReadInASmallerImage) {
  DrawnSquare drawn = drawnSquare(tool::dataMatrix("3,5,7", 12), 96);
  cv::GaussianBlur(drawn.grey, drawn.grey, {0, 0}, 3.5); // 6 pixels a module
  ReadingBudget budget;
  const auto found = read(drawn, budget);
  ASSERT_TRUE(found);
  EXPECT_EQ(found->text, "3,5,7");
  EXPECT_LT(budget.shares, ReadingBudget().shares);
}

TEST(SquareReading, NothingInEmptyAndMirroredSquares) {
  ReadingBudget budget;
  EXPECT_FALSE(read(drawnEmptySquare(64), budget));
  DrawnSquare mirrored = drawnSquare(tool::dataMatrix("3,5,7", 12), 64);
  cv::flip(mirrored.grey, mirrored.grey, 1);
  EXPECT_FALSE(read(mirrored, budget));
}

TEST(SquareReading, StopsWhenTheBudgetIsSpent) {
  const DrawnSquare drawn = drawnSquare(tool::dataMatrix("3,5,7", 12), 64);
  ReadingBudget budget;
  budget.samplings = 2;
  EXPECT_FALSE(read(drawn, budget));

  DrawnSquare blurred = drawnSquare(tool::dataMatrix("3,5,7", 12), 64);
  cv::GaussianBlur(blurred.grey, blurred.grey, {0, 0}, 2.2);
  ReadingBudget without;
  without.shares = 0;
  EXPECT_FALSE(read(blurred, without));
  ReadingBudget whole;
  EXPECT_TRUE(read(blurred, whole));
}

TEST(WholeImageScan, SquareAroundACodeWithoutNeighbours) {
  const cv::Mat_<uchar> dark = tool::dataMatrix("3,5,7", 12);
  cv::Mat grey(200, 300, CV_8UC1, cv::Scalar(kDrawnWhite));
  for (int row = 0; row < 12; ++row)
    for (int column = 0; column < 12; ++column)
      if (dark(row, column) != 0) grey({100 + 6 * column, 60 + 6 * row, 6, 6}).setTo(kDrawnBlack);
  const auto square = scanForSquare(grey);
  ASSERT_TRUE(square);
  // The code is 72 pixels wide, its square 96.
  const cv::Point2f expected[] = {{88, 48}, {184, 48}, {184, 144}, {88, 144}};
  for (std::size_t k = 0; k < 4; ++k) EXPECT_LT(cv::norm((*square)[k] - expected[k]), 3);

  cv::flip(grey, grey, 1);
  EXPECT_FALSE(scanForSquare(grey));
  EXPECT_FALSE(scanForSquare(cv::Mat(1, 1, CV_8UC1, cv::Scalar(0))));
}

} // namespace
} // namespace velmorn::quillet
