// Seeds and growth on rendered boards.
#include "brantis64/grid_growth.h"

#include <gtest/gtest.h>

#include "brantis64/blur_estimate.h"
#include "providers/brantis64/board_view.h"

namespace velmorn::brantis {
namespace {

struct Start {
  BoardView view;
  CornerSearch search;
  SeedSquare square;
  CornerGrid grid{{0, 0}};

  explicit Start(const ViewOptions& options, double share = 1)
      : view(makeView(options)), search(view.image) {
    const cv::Point at = view.centralSquare();
    EXPECT_EQ(readSeeds(view.seedsOf(at, share), square), 0);
    grid = CornerGrid(square.upperLeft);
  }
};

TEST(FindSeedCorners, FindsTheSquareAndTheBlur) {
  Start start({});
  ASSERT_TRUE(findSeedCorners(start.search, start.square, start.grid));
  for (const GridPoint& corner : SeedSquare::kCorners)
    EXPECT_NE(start.grid.find(start.square.upperLeft + corner), nullptr);
  // The image's blur and the pixels' own width, sqrt(0.8^2 + 1 / 12).
  EXPECT_NEAR(start.search.blur(), 0.85, 0.06);
}

// What readers outline: the code's outer edges, or the centres of its outer modules.
TEST(FindSeedCorners, FindsTheSquareAroundACode) {
  for (const double share : {0.75, 0.75 * 11 / 12, 0.75 * 13 / 14, 0.62, 0.79}) {
    Start start({}, share);
    ASSERT_TRUE(findSeedCorners(start.search, start.square, start.grid)) << share;
    const GridCorner* corner = start.grid.find(start.square.upperLeft);
    ASSERT_NE(corner, nullptr);
    const cv::Point2f truth =
        start.view.project(start.square.upperLeft.column * 20, start.square.upperLeft.row * 20);
    EXPECT_LT(cv::norm(corner->pixel - cv::Point2d(truth)), 0.2);
  }
}

TEST(FindSeedCorners, FindsNothingOnABlackSquare) {
  Start start({});
  SeedSquare beside = start.square;
  ++beside.upperLeft.column; // the labels of a black square for a white one
  EXPECT_FALSE(findSeedCorners(start.search, beside, start.grid));
  EXPECT_TRUE(start.grid.corners().empty());
}

TEST(GrowGrid, StopsAtTheGivenNumber) {
  Start start({});
  ASSERT_TRUE(findSeedCorners(start.search, start.square, start.grid));
  growGrid(start.search, start.grid, 60);
  EXPECT_EQ(start.grid.corners().size(), 60U);
}

TEST(GrowGrid, CoversTheBoardAndNothingBeside) {
  ViewOptions options;
  options.board = {8, 6, 20};
  Start start(options);
  ASSERT_TRUE(findSeedCorners(start.search, start.square, start.grid));
  growGrid(start.search, start.grid);
  EXPECT_EQ(start.grid.corners().size(), 9U * 7U);
  growGrid(start.search, start.grid); // nothing is left
  EXPECT_EQ(start.grid.corners().size(), 9U * 7U);
}

// 1300 corners in the image, on all sides up to its borders.
ViewOptions manyCorners() {
  ViewOptions options;
  options.imageSize = {820, 620};
  options.board = {60, 50, 20};
  options.squarePixels = 20;
  options.roll = 20;
  options.tilt = 25;
  return options;
}

// Itself or a direct neighbour.
bool isNearAKnownOne(const CornerGrid& grid, GridPoint at) {
  for (int dy = -1; dy <= 1; ++dy)
    for (int dx = -1; dx <= 1; ++dx)
      if (grid.find(at + GridPoint{dx, dy}) != nullptr) return true;
  return false;
}

TEST(GrowOverBoard, IsTheFullGrowthBelowTheDenseNumber) {
  Start full(manyCorners());
  ASSERT_TRUE(findSeedCorners(full.search, full.square, full.grid));
  CornerGrid grid = full.grid;
  growGrid(full.search, full.grid);
  growOverBoard(full.search, grid, full.grid.corners().size() + 1);
  EXPECT_EQ(grid.spacing(), 1);
  ASSERT_EQ(grid.corners().size(), full.grid.corners().size());
  for (std::size_t i = 0; i < grid.corners().size(); ++i) {
    EXPECT_EQ(grid.corners()[i].at, full.grid.corners()[i].at);
    EXPECT_EQ(grid.corners()[i].pixel, full.grid.corners()[i].pixel);
  }
}

TEST(GrowOverBoard, GrowsThinlyAboveUpToEveryRim) {
  Start full(manyCorners());
  const cv::Rect hidden(500, 150, 120, 90);
  full.view.image(hidden).setTo(200);
  ASSERT_TRUE(findSeedCorners(full.search, full.square, full.grid));
  CornerGrid grid = full.grid;
  growGrid(full.search, full.grid);
  growOverBoard(full.search, grid, 120);
  EXPECT_EQ(grid.spacing(), 2);
  EXPECT_LT(grid.corners().size(), full.grid.corners().size() / 2);
  for (const GridCorner& corner : grid.corners()) {
    const GridCorner* same = full.grid.find(corner.at);
    ASSERT_NE(same, nullptr);
    EXPECT_LT(cv::norm(corner.pixel - same->pixel), 0.2);
  }
  for (const GridCorner& corner : full.grid.corners())
    EXPECT_TRUE(isNearAKnownOne(grid, corner.at)) << corner.pixel;
}

TEST(GrowOverBoard, DoesNothingWithoutAStart) {
  const cv::Mat1b image(50, 50, uchar{128});
  CornerSearch search(image);
  CornerGrid grid({0, 0});
  growOverBoard(search, grid, 0);
  EXPECT_TRUE(grid.corners().empty());
}

TEST(GrowGrid, DoesNothingWithoutAStart) {
  const cv::Mat1b image(50, 50, uchar{128});
  CornerSearch search(image);
  CornerGrid grid({0, 0});
  growGrid(search, grid);
  EXPECT_TRUE(grid.corners().empty());
}

TEST(EstimateBlur, FollowsTheImage) {
  for (const double blur : {0.6, 1.5}) {
    ViewOptions options;
    options.effects.blurSigma = blur;
    Start start(options);
    ASSERT_TRUE(findSeedCorners(start.search, start.square, start.grid));
    growGrid(start.search, start.grid);
    EXPECT_NEAR(estimateBlur(start.search, start.grid, 40), std::sqrt(blur * blur + 1.0 / 12),
                0.06);
  }
}

TEST(EstimateBlur, StaysWithoutCorners) {
  const cv::Mat1b image(50, 50, uchar{128});
  CornerSearch search(image);
  search.setBlur(1.3);
  EXPECT_EQ(estimateBlur(search, CornerGrid({0, 0}), 40), 1.3);
}

} // namespace
} // namespace velmorn::brantis
