// The corners that are handed out.
#include "brantis64/final_fit.h"

#include <algorithm>

#include <gtest/gtest.h>
#include <opencv2/imgproc.hpp>

#include "brantis64/even_spread.h"
#include "brantis64/grid_growth.h"
#include "providers/brantis64/board_view.h"

namespace velmorn::brantis {
namespace {

struct Found {
  BoardView view = makeView({});
  CornerSearch search{view.image};
  CornerGrid grid{{0, 0}};

  Found() {
    SeedSquare square;
    EXPECT_EQ(readSeeds(view.seedsOf(view.centralSquare()), square), 0);
    grid = CornerGrid(square.upperLeft);
    EXPECT_TRUE(findSeedCorners(search, square, grid));
    growGrid(search, grid);
  }

  std::vector<GridCorner> fitted(std::size_t most) {
    return fitFinally(search, view.image, grid, most);
  }
};

bool has(const std::vector<GridCorner>& corners, GridPoint at) {
  return std::any_of(corners.begin(), corners.end(),
                     [at](const GridCorner& c) { return c.at == at; });
}

TEST(FitFinally, GivesTheSpreadCornersByRows) {
  Found found;
  const std::vector<GridCorner> chosen = evenSpread(found.grid.corners(), 60);
  const std::vector<GridCorner> corners = found.fitted(60);
  ASSERT_EQ(corners.size(), 60U);
  for (std::size_t i = 0; i < corners.size(); ++i) EXPECT_EQ(corners[i].at, chosen[i].at);
  EXPECT_TRUE(std::is_sorted(corners.begin(), corners.end(), rowsFirst));
}

TEST(FitFinally, ReplacesADisturbedCornerByItsNeighbour) {
  Found found;
  const std::vector<GridCorner> before = found.fitted(60);
  const GridCorner hidden = before[30];
  cv::circle(found.view.image, cv::Point(hidden.pixel) + cv::Point(4, 3), 5, 100, -1);
  const std::vector<GridCorner> corners = found.fitted(60);
  ASSERT_EQ(corners.size(), 60U);
  EXPECT_FALSE(has(corners, hidden.at));
  EXPECT_TRUE(std::is_sorted(corners.begin(), corners.end(), rowsFirst));
  for (const GridCorner& c : corners)
    EXPECT_TRUE(has(before, c.at) || distance2(c.at, hidden.at) == 1) << c.pixel;
  for (std::size_t i = 1; i < corners.size(); ++i) EXPECT_FALSE(corners[i].at == corners[i - 1].at);
}

TEST(FitFinally, HandsOutFewerWhereNoneIsLeft) {
  Found found;
  const std::size_t all = found.fitted(5000).size();
  const GridCorner hidden = evenSpread(found.grid.corners(), 60)[30];
  cv::circle(found.view.image, cv::Point(hidden.pixel), 5, 100, -1);
  const std::vector<GridCorner> corners = found.fitted(5000);
  EXPECT_EQ(corners.size(), all - 1);
  EXPECT_FALSE(has(corners, hidden.at));
}

TEST(FitFinally, GivesNothingWithoutCorners) {
  const cv::Mat1b image(50, 50, uchar{128});
  CornerSearch search(image);
  EXPECT_TRUE(fitFinally(search, image, CornerGrid({0, 0}), 5).empty());
}

} // namespace
} // namespace velmorn::brantis
