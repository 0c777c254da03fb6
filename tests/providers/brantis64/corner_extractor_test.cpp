// The extractor on rendered boards: all visible corners, no others, in the right place.
#include "brantis64/corner_extractor.h"
#include "common/provider_boundary.h"

#include <algorithm>
#include <array>
#include <cmath>

#include <gtest/gtest.h>
#include <opencv2/calib3d.hpp>
#include <opencv2/imgproc.hpp>

#include "brantis64/extractor_status.h"
#include "providers/brantis64/board_view.h"

namespace velmorn::brantis {
namespace {

using provider::kBadImage;

std::vector<BoardCorner> cornersOf(const BoardView& view) {
  std::vector<BoardCorner> corners;
  EXPECT_EQ(extractCorners(view.image, view.seedsOf(view.centralSquare()), corners), kFound);
  return corners;
}

void expectGood(const BoardView& view, const std::vector<BoardCorner>& corners, double rms) {
  const Comparison comparison = compare(view, corners);
  EXPECT_GE(comparison.recall(), 0.995);
  EXPECT_EQ(comparison.wrong, 0U);
  EXPECT_LE(comparison.rms, rms);
}

TEST(ExtractCorners, FindsAllOfAWholeBoard) {
  ViewOptions options;
  options.board = {16, 12, 12.5};
  options.tilt = 25;
  const BoardView view = makeView(options);
  const std::vector<BoardCorner> corners = cornersOf(view);
  EXPECT_EQ(corners.size(), 17U * 13U);
  expectGood(view, corners, 0.02);
  // Row by row from the board's origin.
  EXPECT_EQ(corners.front().onBoard, cv::Point2f(0, 0));
  EXPECT_EQ(corners[1].onBoard, cv::Point2f(12.5F, 0));
  EXPECT_EQ(corners.back().onBoard, cv::Point2f(200, 150));
}

TEST(ExtractCorners, FindsAllAtEveryTurnAndTilt) {
  for (int turn = 0; turn < 360; turn += 30) {
    ViewOptions options;
    options.squarePixels = 36;
    options.roll = turn;
    options.tilt = turn % 41;
    options.tiltDirection = 2.5 * turn;
    options.lookAt = {0.3 + 0.001 * turn, 0.6 - 0.001 * turn};
    options.light = turn % 60 == 0 ? 0.4 : -0.4;
    const BoardView view = makeView(options);
    SCOPED_TRACE(turn);
    expectGood(view, cornersOf(view), 0.025);
  }
}

TEST(ExtractCorners, FindsSmallAndLargeSquares) {
  for (const double pixels : {20.0, 48.0, 90.0}) {
    ViewOptions options;
    options.board = {30, 24, 20};
    options.squarePixels = pixels;
    options.roll = 17;
    if (pixels < 21) options.imageSize = {440, 330};
    const BoardView view = makeView(options);
    SCOPED_TRACE(pixels);
    expectGood(view, cornersOf(view), pixels < 48 ? 0.035 : 0.018);
  }
}

TEST(ExtractCorners, GivesThePoseOfTheCamera) {
  ViewOptions options;
  options.imageSize = {1280, 960};
  options.squarePixels = 80;
  options.tilt = 30;
  const BoardView view = makeView(options);
  std::vector<cv::Point3f> onBoard;
  std::vector<cv::Point2f> pixels;
  for (const BoardCorner& c : cornersOf(view)) {
    onBoard.emplace_back(c.onBoard.x, c.onBoard.y, 0.0F);
    pixels.push_back(c.pixel);
  }
  cv::Vec3d rotation, translation;
  ASSERT_TRUE(cv::solvePnP(onBoard, pixels, view.camera.matrix, view.camera.distortion, rotation,
                           translation));
  cv::Matx33d camFromBoard;
  cv::Rodrigues(rotation, camFromBoard);
  const cv::Matx33d apart = camFromBoard * view.camFromBoard.get_minor<3, 3>(0, 0).t();
  EXPECT_LT(cv::norm(apart - cv::Matx33d::eye()) / std::sqrt(2.0), 0.005 * CV_PI / 180);
}

TEST(ExtractCorners, TakesTheOutlineOfACodeForTheSquare) {
  ViewOptions options;
  options.roll = 40;
  options.tilt = 30;
  const BoardView view = makeView(options);
  for (const double share : {0.75, 0.75 * 11 / 12}) {
    std::vector<BoardCorner> corners;
    ASSERT_EQ(extractCorners(view.image, view.seedsOf(view.centralSquare(), share), corners),
              kFound);
    expectGood(view, corners, 0.03);
  }
}

TEST(ExtractCorners, StandsSeedsThatAreOff) {
  const BoardView view = makeView({});
  for (int k = 0; k < 8; ++k) {
    auto seeds = view.seedsOf(view.centralSquare());
    for (std::size_t i = 0; i < 4; ++i)
      seeds[i].pixel += cv::Point2f((k >> i) % 2 == 0 ? 1.0F : -1.0F, i < 2 ? 1.0F : -1.0F);
    std::vector<BoardCorner> corners;
    ASSERT_EQ(extractCorners(view.image, seeds, corners), kFound);
    expectGood(view, corners, 0.025);
  }
}

TEST(ExtractCorners, SpreadsFiveHundredAndTwelve) {
  ViewOptions options;
  options.imageSize = {1000, 760};
  options.board = {40, 30, 20};
  options.squarePixels = 24;
  const BoardView view = makeView(options);
  const std::vector<BoardCorner> corners = cornersOf(view);
  EXPECT_LE(corners.size(), kMostCorners);
  EXPECT_GE(corners.size(), kMostCorners - 2);
  EXPECT_EQ(compare(view, corners).wrong, 0U);
  // Something from every part of the image.
  std::array<int, 48> perTile{};
  for (const BoardCorner& c : corners)
    ++perTile[static_cast<std::size_t>(8 * static_cast<int>(c.pixel.y / 127) +
                                       static_cast<int>(c.pixel.x / 125.01F))];
  EXPECT_GE(*std::min_element(perTile.begin(), perTile.end()), 4);
}

// Far more corners than are handed out, so that most are not even searched.
TEST(ExtractCorners, SpreadsThemOverThousands) {
  ViewOptions options;
  options.imageSize = {1400, 1100};
  options.board = {110, 100, 20};
  options.squarePixels = 16;
  options.roll = 25;
  options.tilt = 10;
  const BoardView view = makeView(options);
  const std::vector<CodeBoardCorner> visible = view.visibleCorners(5);
  ASSERT_GT(visible.size(), 5000U);

  const std::vector<BoardCorner> corners = cornersOf(view);
  EXPECT_EQ(corners.size(), kMostCorners);
  const Comparison comparison = compare(view, corners);
  EXPECT_EQ(comparison.wrong, 0U);
  EXPECT_LE(comparison.rms, 0.03);
  // Evenly would be every third or fourth square either way.
  const auto squares = [&](cv::Point2f p) { return cv::norm(p) / view.board.square; };
  double farthest = 0;
  for (const CodeBoardCorner& v : visible) {
    double nearest = 1e9;
    for (const BoardCorner& c : corners)
      nearest = std::min(nearest, squares(c.onBoard - v.onBoard));
    farthest = std::max(farthest, nearest);
  }
  EXPECT_LE(farthest, 4.5);
  // Something at each of the image's borders.
  std::array<int, 4> atBorder{};
  for (const BoardCorner& c : corners) {
    const auto width = static_cast<float>(view.image.cols - 1);
    const auto height = static_cast<float>(view.image.rows - 1);
    const std::array<float, 4> distances{c.pixel.x, width - c.pixel.x, c.pixel.y,
                                         height - c.pixel.y};
    for (std::size_t k = 0; k < 4; ++k)
      if (distances[k] < 20) ++atBorder[k];
  }
  EXPECT_GE(*std::min_element(atBorder.begin(), atBorder.end()), 10);

  std::vector<BoardCorner> again = cornersOf(view);
  ASSERT_EQ(again.size(), corners.size());
  for (std::size_t i = 0; i < corners.size(); ++i) {
    EXPECT_EQ(again[i].onBoard, corners[i].onBoard);
    EXPECT_EQ(again[i].pixel, corners[i].pixel);
  }
}

TEST(ExtractCorners, FindsAllInADimImage) {
  BoardView view = makeView({});
  view.image.convertTo(view.image, CV_8U, 0.18, 10); // 36 grey levels from black to white
  cv::Mat noise(view.image.size(), CV_16S), sum;
  cv::RNG(3).fill(noise, cv::RNG::NORMAL, 0, 4);
  cv::add(view.image, noise, view.image, cv::noArray(), CV_8U);
  const Comparison comparison = compare(view, cornersOf(view));
  EXPECT_GE(comparison.recall(), 0.98);
  EXPECT_EQ(comparison.wrong, 0U);
}

TEST(ExtractCorners, GrowsAroundWhatHidesTheBoard) {
  ViewOptions options;
  options.board = {18, 14, 20};
  const BoardView clear = makeView(options);
  BoardView view = clear;
  const cv::Rect hidden(150, 90, 130, 110);
  view.image(hidden).setTo(200);
  cv::circle(view.image, {430, 300}, 40, 20, -1);
  const Comparison comparison = compare(view, cornersOf(view));
  EXPECT_EQ(comparison.wrong, 0U);
  std::size_t covered = 0;
  for (const CodeBoardCorner& c : view.visibleCorners(5))
    if (hidden.contains(c.pixel) || cv::norm(c.pixel - cv::Point2f(430, 300)) < 40) ++covered;
  EXPECT_LE(comparison.found, comparison.visible - covered);
  EXPECT_GE(comparison.found + covered + 40, comparison.visible); // some rims are half hidden
}

TEST(ExtractCorners, KeepsToTheSeedsBoard) {
  ViewOptions options;
  options.board = {8, 10, 20};
  options.squarePixels = 28;
  const BoardView left = makeView(options);
  // The same board once more, turned a little and beside.
  options.lookAt = {-0.75, 0.5};
  options.roll = 7;
  const BoardView right = makeView(options);
  BoardView both = left;
  right.image.colRange(460, 640).copyTo(both.image.colRange(460, 640));
  const Comparison comparison = compare(both, cornersOf(both));
  EXPECT_EQ(comparison.wrong, 0U);
  EXPECT_GE(comparison.recall(), 0.995);
}

TEST(ExtractCorners, LeavesTheOutputOnFailure) {
  const BoardView view = makeView({});
  const auto seeds = view.seedsOf(view.centralSquare());
  std::vector<BoardCorner> corners(3);
  EXPECT_EQ(extractCorners(cv::Mat(), seeds, corners), kBadImage);
  EXPECT_EQ(extractCorners(cv::Mat3b(480, 640), seeds, corners), kBadImage);
  EXPECT_EQ(extractCorners(cv::Mat1f(480, 640), seeds, corners), kBadImage);
  auto mirrored = seeds;
  for (BoardCorner& seed : mirrored) seed.pixel.x = 640 - seed.pixel.x;
  EXPECT_EQ(extractCorners(view.image, mirrored, corners), kMirrored);
  EXPECT_EQ(corners.size(), 3U);
}

TEST(ExtractCorners, FindsNoBoardInOtherImages) {
  const BoardView view = makeView({});
  const auto seeds = view.seedsOf(view.centralSquare());
  cv::Mat1b noise(480, 640), ramp(480, 640), stripes(480, 640), dots(480, 640);
  cv::RNG(5).fill(noise, cv::RNG::UNIFORM, 0, 256);
  for (int y = 0; y < 480; ++y)
    for (int x = 0; x < 640; ++x) {
      ramp(y, x) = static_cast<uchar>((x + y) / 5);
      stripes(y, x) = x / 16 % 2 == 0 ? 20 : 220;
      dots(y, x) = x / 16 % 2 == 0 && y / 16 % 2 == 0 ? 20 : 220;
    }
  std::vector<BoardCorner> corners;
  for (const cv::Mat1b& image :
       {cv::Mat1b(1, 1, uchar{7}), cv::Mat1b(480, 640, uchar{0}), cv::Mat1b(480, 640, uchar{255}),
        noise, ramp, stripes, dots, cv::Mat1b(1, 640, uchar{9}), cv::Mat1b(480, 1, uchar{9})})
    EXPECT_EQ(extractCorners(image, seeds, corners), kNoCornerAtSeeds);
}

TEST(ExtractCorners, FindsNothingWhereTheSeedsAreElsewhere) {
  const BoardView view = makeView({});
  auto seeds = view.seedsOf(view.centralSquare());
  std::vector<BoardCorner> corners;
  for (BoardCorner& seed : seeds) seed.pixel += cv::Point2f(16, 0); // half a square off
  EXPECT_EQ(extractCorners(view.image, seeds, corners), kNoCornerAtSeeds);
  for (BoardCorner& seed : seeds) seed.pixel += cv::Point2f(90000, 0);
  EXPECT_EQ(extractCorners(view.image, seeds, corners), kNoCornerAtSeeds);
}

TEST(ExtractCorners, NeedsFourCorners) {
  ViewOptions options;
  options.squarePixels = 60;
  BoardView view = makeView(options);
  const cv::Point square = view.centralSquare();
  const auto seeds = view.seedsOf(square);
  // Only three corners of the square are left to see.
  cv::Mat1b image(480, 640, uchar{128});
  for (std::size_t k = 0; k < 3; ++k) {
    const cv::Rect shown(cv::Point(seeds[k].pixel) - cv::Point(22, 22), cv::Size(45, 45));
    view.image(shown).copyTo(image(shown));
  }
  std::vector<BoardCorner> corners;
  EXPECT_EQ(extractCorners(image, seeds, corners), kTooFewCorners);
}

} // namespace
} // namespace velmorn::brantis
