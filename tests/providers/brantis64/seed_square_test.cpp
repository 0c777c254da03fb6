// Seeds and what is wrong with them.
#include "brantis64/seed_square.h"

#include <limits>

#include <gtest/gtest.h>

#include "brantis64/extractor_status.h"

namespace velmorn::brantis {
namespace {

using Seeds = std::array<BoardCorner, 4>;

// Square (3, 5) of side 20.
Seeds goodSeeds() {
  return {{{{100, 140}, {40, 100}},
           {{100, 100}, {40, 80}},
           {{140, 100}, {60, 80}},
           {{140, 140}, {60, 100}}}};
}

int statusOf(const Seeds& seeds) {
  SeedSquare square;
  square.unit = -7;
  const int status = readSeeds(seeds, square);
  if (status != kFound) {
    EXPECT_EQ(square.unit, -7);
  }
  return status;
}

TEST(ReadSeeds, GivesUnitAndPlace) {
  SeedSquare square;
  ASSERT_EQ(readSeeds(goodSeeds(), square), kFound);
  EXPECT_EQ(square.unit, 20);
  EXPECT_EQ(square.upperLeft, (GridPoint{2, 4}));
  EXPECT_EQ(square.pixels[2], cv::Point2d(140, 100));
}

TEST(ReadSeeds, TakesAnyUnitRoundedToFloat) {
  for (const float unit : {12.5F, 0.1F, 1e-3F, 333.3F})
    for (const int a : {1, 60, 500}) {
      Seeds seeds = goodSeeds();
      const std::array<GridPoint, 4> at{{{a - 1, a}, {a - 1, a - 1}, {a, a - 1}, {a, a}}};
      for (std::size_t k = 0; k < 4; ++k)
        seeds[k].onBoard = {static_cast<float>(at[k].column) * unit,
                            static_cast<float>(at[k].row) * unit};
      SeedSquare square;
      ASSERT_EQ(readSeeds(seeds, square), kFound) << unit << " " << a;
      EXPECT_EQ(square.upperLeft, (GridPoint{a - 1, a - 1}));
      EXPECT_NEAR(square.unit, static_cast<double>(unit), 1.2e-7 * static_cast<double>(unit));
    }
}

TEST(ReadSeeds, RefusesBoardCoordinatesThatAreNoSquare) {
  Seeds seeds = goodSeeds();
  for (BoardCorner& seed : seeds) seed.onBoard = {0, 0}; // a size of 0
  EXPECT_EQ(statusOf(seeds), kNoUnitSquare);
  seeds = goodSeeds();
  seeds[3].onBoard.x = 61;
  EXPECT_EQ(statusOf(seeds), kNoUnitSquare);
  seeds = goodSeeds();
  for (BoardCorner& seed : seeds) seed.onBoard.x += 7; // between grid lines
  EXPECT_EQ(statusOf(seeds), kNoUnitSquare);
  seeds = goodSeeds();
  std::swap(seeds[0].onBoard, seeds[2].onBoard);
  EXPECT_EQ(statusOf(seeds), kNoUnitSquare);
  seeds = goodSeeds();
  for (BoardCorner& seed : seeds) seed.onBoard *= -1; // a negative size
  EXPECT_EQ(statusOf(seeds), kNoUnitSquare);
}

TEST(ReadSeeds, RefusesWhatIsNoNumber) {
  for (const float bad :
       {std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity(), -1e30F})
    for (std::size_t k = 0; k < 4; ++k) {
      Seeds seeds = goodSeeds();
      seeds[k].onBoard.y = bad;
      EXPECT_EQ(statusOf(seeds), kNoUnitSquare);
      seeds = goodSeeds();
      seeds[k].pixel.x = bad;
      EXPECT_EQ(statusOf(seeds), kNoSquareInImage);
    }
}

TEST(ReadSeeds, RefusesMirroredSeeds) {
  Seeds seeds = goodSeeds();
  for (BoardCorner& seed : seeds) seed.pixel.x = 240 - seed.pixel.x;
  EXPECT_EQ(statusOf(seeds), kMirrored);
}

TEST(ReadSeeds, RefusesCrossedAndFlatOutlines) {
  Seeds seeds = goodSeeds();
  std::swap(seeds[2].pixel, seeds[3].pixel);
  EXPECT_EQ(statusOf(seeds), kNoSquareInImage);
  seeds = goodSeeds();
  for (std::size_t k = 0; k < 4; ++k)
    seeds[k].pixel = cv::Point2f(20.0F * static_cast<float>(k), 7);
  EXPECT_EQ(statusOf(seeds), kNoSquareInImage);
}

TEST(ReadSeeds, RefusesSmallOutlines) {
  Seeds seeds = goodSeeds();
  for (BoardCorner& seed : seeds) seed.pixel *= 0.05F;
  EXPECT_EQ(statusOf(seeds), kTooSmall);
}

TEST(FrameAtCorner, ExpandsAnOutline) {
  SeedSquare square;
  ASSERT_EQ(readSeeds(goodSeeds(), square), kFound);
  const LocalFrame same = frameAtCorner(square, {1, 0}, 1);
  EXPECT_NEAR(cv::norm(same.pixel - cv::Point2d(140, 100)), 0, 1e-6);
  const LocalFrame wider = frameAtCorner(square, {1, 1}, 1.5); // 40 to 60 pixels
  EXPECT_NEAR(cv::norm(wider.pixel - cv::Point2d(150, 150)), 0, 1e-6);
  EXPECT_NEAR(cv::norm(wider.columnStep - cv::Point2d(60, 0)), 0, 1e-6);
}

} // namespace
} // namespace velmorn::brantis
