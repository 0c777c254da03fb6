// Which pixels a fit sees, and how much they weigh.
#include "brantis64/corner_window.h"

#include <gtest/gtest.h>

#include "providers/brantis64/drawn_corner.h"

namespace velmorn::brantis {
namespace {

CornerTask taskAt(cv::Point2d place) {
  CornerTask task;
  task.frame = DrawnCorner{}.frame(); // squares of 40 pixels, upright
  task.frame.pixel = place;
  task.whiteLowerRight = true;
  task.radius = 14;
  return task;
}

// The weight of the pixel at an offset; -1 where it is not in the window.
double weightAt(const std::vector<PixelBlock>& window, float x, float y) {
  for (const PixelBlock& block : window)
    for (std::size_t k = 0; k < kLanes; ++k)
      if (block.x[k] == x && block.y[k] == y && (block.weight[k] > 0 || x != 0 || y != 0))
        return static_cast<double>(block.weight[k]);
  return -1;
}

TEST(CollectWindow, WeighsPaperFullyAndCodesNotAtAll) {
  std::vector<PixelBlock> window;
  ASSERT_TRUE(collectWindow(draw({}), taskAt({20, 20}), window));
  EXPECT_NEAR(weightAt(window, 9, 1), 1, 0.01);  // white, beside the code
  EXPECT_NEAR(weightAt(window, 9, -9), 1, 0.01); // black
  EXPECT_LT(weightAt(window, 9, 9), 1e-3);       // a code starts 5 pixels from the edges
  EXPECT_LT(weightAt(window, -9, -9), 1e-3);     // the other one
}

TEST(CollectWindow, StaysWithinRadiusAndReach) {
  CornerTask task = taskAt({20, 20});
  task.reach = {0.1, 0.3, 0.2, 0.4}; // 4, 12, 8 and 16 pixels
  std::vector<PixelBlock> window;
  ASSERT_TRUE(collectWindow(draw({}), task, window));
  for (const PixelBlock& block : window)
    for (std::size_t k = 0; k < kLanes; ++k) {
      if (!(block.weight[k] > 0)) continue;
      EXPECT_GE(block.x[k], -4);
      EXPECT_LE(block.x[k], 12);
      EXPECT_GE(block.y[k], -8);
      EXPECT_LE(std::hypot(block.x[k], block.y[k]), 14);
    }
  EXPECT_GT(weightAt(window, -4, 0), 0);
  EXPECT_GT(weightAt(window, 0, 14), 0);
}

TEST(CollectWindow, LeavesOutWhatLiesBesideTheImage) {
  std::vector<PixelBlock> window;
  ASSERT_TRUE(collectWindow(draw({}), taskAt({3, 20}), window));
  EXPECT_EQ(weightAt(window, -4, 0), -1);
  EXPECT_GT(weightAt(window, -3, 0), 0);
  EXPECT_FALSE(collectWindow(draw({}), taskAt({-30, 20}), window));
  EXPECT_FALSE(collectWindow(draw({}), taskAt({1e6, 1e6}), window));
}

} // namespace
} // namespace velmorn::brantis
