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
