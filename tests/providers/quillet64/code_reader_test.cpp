// Whole images: boards in all positions, and what is no board.
#include "quillet64/code_reader.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <zint.h>
#include <opencv2/imgproc.hpp>

#include "providers/quillet64/code_squares.h"
#include "velmorn/data_matrix.h"

namespace velmorn::quillet {
namespace {

// Side of a square whose digits call for symbols of the given size.
double unitFor(int modules) { return modules == 12 ? 20 : modules == 14 ? 12.25 : 123.4567; }

void expectFound(const View& view, double maxError) {
  const BoardView seen = boardView(view);
  const auto code = findCode(seen.grey);
  ASSERT_TRUE(code);
  EXPECT_TRUE(seen.hasText(code->text)) << code->text;
  EXPECT_LT(seen.cornerError(*code), maxError) << code->text;
}

TEST(CodeReader, EveryRotation) {
  for (int degrees = 0; degrees < 360; degrees += 24) {
    SCOPED_TRACE(degrees);
    View view;
    view.rotation = degrees;
    view.tilt = degrees % 40;
    expectFound(view, 0.6);
  }
}

TEST(CodeReader, EverySizeOfSquareAndSymbol) {
  for (const double pixels : {24, 32, 48, 100})
    for (const int modules : {12, 14, 16}) {
      SCOPED_TRACE(std::to_string(pixels) + " px, " + std::to_string(modules) + " modules");
      View view;
      view.squarePixels = pixels;
      view.unit = unitFor(modules);
      view.rotation = 33;
      view.tilt = 20;
      expectFound(view, 0.6);
    }
}

TEST(CodeReader, SmallSquaresTiltedByFortyDegrees) {
  for (const double axis : {0, 50, 100}) {
    SCOPED_TRACE(axis);
    View view;
    view.squarePixels = 24;
    view.tilt = 40;
    view.tiltAxis = axis;
    view.rotation = 3 * axis + 10;
    expectFound(view, 0.6);
  }
}

TEST(CodeReader, BlurredNoisyAndSteep) {
  for (const double axis : {20, 110}) {
    SCOPED_TRACE(axis);
    View view;
    view.imageSize = {800, 600};
    view.tilt = 50;
    view.tiltAxis = axis;
    view.rotation = axis;
    view.effects = {1.5, 6, 3};
    expectFound(view, 1);
  }
}

TEST(CodeReader, SquaresTooLargeForAnyBlackOneToBeWhole) {
  View view;
  view.squarePixels = 230;
  view.column = 10.5;
  view.row = 6.5; // the middle of a white square
  view.rotation = 10;
  expectFound(view, 0.6);
}

TEST(CodeReader, UnevenLightAndGlare) {
  BoardView seen = boardView({});
  for (int y = 0; y < seen.grey.rows; ++y)
    for (int x = 0; x < seen.grey.cols; ++x) {
      const double glare = 200 * std::exp(-(cv::norm(cv::Point(x - 200, y - 200)) / 60));
      uchar& grey = seen.grey.at<uchar>(y, x);
      grey = cv::saturate_cast<uchar>(grey * (0.2 + 0.001 * x) + glare);
    }
  const auto code = findCode(seen.grey);
  ASSERT_TRUE(code);
  EXPECT_TRUE(seen.hasText(code->text));
  EXPECT_LT(seen.cornerError(*code), 0.6);
}

TEST(CodeReader, CoveredBoard) {
  BoardView seen = boardView({});
  cv::rectangle(seen.grey, {0, 0, 640, 200}, cv::Scalar(90), -1);
  cv::rectangle(seen.grey, {0, 0, 300, 480}, cv::Scalar(160), -1);
  cv::circle(seen.grey, {560, 400}, 70, cv::Scalar(40), -1);
  const auto code = findCode(seen.grey);
  ASSERT_TRUE(code);
  EXPECT_TRUE(seen.hasText(code->text));
  EXPECT_LT(seen.cornerError(*code), 0.6);
}

TEST(CodeReader, CornersStartAtTheBottomLeftOfTheSymbol) {
  // An upright board: down in the image is down on the board.
  View view;
  view.effects = {};
  const auto code = findCode(boardView(view).grey);
  ASSERT_TRUE(code);
  const auto& c = code->squareCorners;
  EXPECT_LT(c[1].y, c[0].y - 40);
  EXPECT_GT(c[2].x, c[1].x + 40);
  EXPECT_GT(c[3].y, c[2].y + 40);
}

TEST(CodeReader, TwoBoardsGiveOneOfTheirCodes) {
  View left, right;
  left.squarePixels = right.squarePixels = 40;
  right.unit = 31;
  right.rotation = 77;
  const BoardView a = boardView(left), b = boardView(right);
  cv::Mat both(480, 1280, CV_8UC1);
  a.grey.copyTo(both({0, 0, 640, 480}));
  b.grey.copyTo(both({640, 0, 640, 480}));
  const auto code = findCode(both);
  ASSERT_TRUE(code);
  FoundCode inB = *code;
  for (cv::Point2f& p : inB.squareCorners) p.x -= 640;
  if (a.hasText(code->text))
    EXPECT_LT(a.cornerError(*code), 0.6);
  else
    EXPECT_TRUE(b.hasText(code->text) && b.cornerError(inB) < 0.6) << code->text;
}

TEST(CodeReader, MirroredBoardGivesNothing) {
  for (const double pixels : {24, 60}) {
    View view;
    view.squarePixels = pixels;
    view.rotation = 12;
    cv::Mat mirrored;
    cv::flip(boardView(view).grey, mirrored, 1);
    EXPECT_FALSE(findCode(mirrored));
  }
}

cv::Mat plainBoard(int side) {
  cv::Mat grey(480, 640, CV_8UC1, cv::Scalar(kDrawnWhite));
  for (int y = 0; y < 480; y += side)
    for (int x = 0; x < 640; x += side)
      if ((x + y) / side % 2 == 0)
        grey(cv::Rect(x, y, side, side) & cv::Rect(0, 0, 640, 480)).setTo(kDrawnBlack);
  return grey;
}

TEST(CodeReader, NothingOnPlainBoardsRampsAndNoise) {
  EXPECT_FALSE(findCode(plainBoard(40)));
  EXPECT_FALSE(findCode(plainBoard(10)));
  cv::Mat ramp(480, 640, CV_8UC1), noise(480, 640, CV_8UC1);
  for (int x = 0; x < 640; ++x) ramp.col(x).setTo(x * 255 / 640);
  EXPECT_FALSE(findCode(ramp));
  cv::RNG rng(5);
  rng.fill(noise, cv::RNG::UNIFORM, 0, 256);
  EXPECT_FALSE(findCode(noise));
  for (const double sigma : {1.0, 3.0, 8.0}) {
    cv::Mat texture;
    cv::GaussianBlur(noise, texture, {0, 0}, sigma);
    cv::normalize(texture, texture, 0, 255, cv::NORM_MINMAX);
    EXPECT_FALSE(findCode(texture)) << sigma;
  }
}

TEST(CodeReader, ImagesOfAnySize) {
  for (const cv::Size size : {cv::Size(1, 1), cv::Size(2, 1), cv::Size(3, 3), cv::Size(7, 200),
                              cv::Size(5000, 3), cv::Size(1, 3000), cv::Size(8000, 6000)})
    for (const int level : {0, 128, 255})
      EXPECT_FALSE(findCode(cv::Mat(size, CV_8UC1, cv::Scalar(level))));
}

TEST(CodeReader, LargeImagesAreSearchedOnCoarserLevels) {
  const BoardView seen = boardView({});
  cv::Mat large(6000, 8000, CV_8UC1, cv::Scalar(128)), board;
  cv::resize(seen.grey, board, {}, 3, 3, cv::INTER_LINEAR);
  board.copyTo(large({5000, 4000, board.cols, board.rows}));
  const auto code = findCode(large);
  ASSERT_TRUE(code);
  EXPECT_TRUE(seen.hasText(code->text));
}

TEST(CodeReader, RowsMayBeApartInMemory) {
  const BoardView seen = boardView({});
  cv::Mat wide(480, 1000, CV_8UC1, cv::Scalar(0));
  seen.grey.copyTo(wide({100, 0, 640, 480}));
  const auto code = findCode(wide({100, 0, 640, 480}));
  ASSERT_TRUE(code);
  EXPECT_LT(seen.cornerError(*code), 0.6);
}

TEST(CodeReader, CodesCutByTheImageGiveNothing) {
  // One square, its code complete or not, but a corner outside.
  const DrawnSquare drawn = drawnSquare(tool::dataMatrix("3,5,7", 12), 64);
  ASSERT_TRUE(findCode(drawn.grey));
  for (const int cut : {2, 12, 40})
    EXPECT_FALSE(findCode(drawn.grey({128 + cut, 0, 320 - 128 - cut, 320}))) << cut;
}

TEST(CodeReader, ForeignCodesGiveNothing) {
  EXPECT_FALSE(findCode(drawnSquare(tool::dataMatrix("HELLO", 12), 64).grey));
  EXPECT_FALSE(findCode(drawnSquare(tool::dataMatrix("0,5,7", 12), 64).grey));

  zint_symbol* symbol = ZBarcode_Create();
  symbol->symbology = BARCODE_QRCODE;
  const unsigned char text[] = "3,5,7";
  ASSERT_EQ(ZBarcode_Encode(symbol, text, 5), 0);
  cv::Mat grey(300, 300, CV_8UC1, cv::Scalar(255));
  for (int row = 0; row < symbol->rows; ++row)
    for (int column = 0; column < symbol->width; ++column)
      if (((symbol->encoded_data[row][column / 8] >> (column % 8)) & 1) != 0)
        grey({60 + 8 * column, 60 + 8 * row, 8, 8}).setTo(0);
  ZBarcode_Delete(symbol);
  EXPECT_FALSE(findCode(grey));
}

} // namespace
} // namespace velmorn::quillet
