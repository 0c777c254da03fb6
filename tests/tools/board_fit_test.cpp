// The transform between two cameras from boards that both saw.
#include "velmorn/board_fit.h"

#include <gtest/gtest.h>

#include <cmath>

namespace velmorn::tool {
namespace {

// A quarter turn about z and (1, 2, 3).
const cv::Matx44d kAFromB(0, -1, 0, 1, 1, 0, 0, 2, 0, 0, 1, 3, 0, 0, 0, 1);

SeenBoard squareAt(double z) {
  SeenBoard board;
  board.byB = {{0, 0, z}, {10, 0, z}, {0, 10, z}, {10, 10, z}};
  board.byA = {{1, 2, z + 3}, {1, 12, z + 3}, {-9, 2, z + 3}, {-9, 12, z + 3}};
  return board;
}

TEST(BoardFit, FindsTheTransformOfOneBoardAndOfTwo) {
  for (const BoardFit& fit : {fitBoards({squareAt(0)}), fitBoards({squareAt(0), squareAt(50)})}) {
    EXPECT_LT(cv::norm(fit.aFromB - kAFromB), 1e-9);
    EXPECT_LT(fit.apart, 1e-9);
  }
}

TEST(BoardFit, LeavesTheDistanceThatNoTransformCloses) {
  SeenBoard near = squareAt(0), far = squareAt(100);
  for (cv::Vec3d& point : far.byA) point[2] += 2; // the boards are 102 apart for a, 100 for b
  const BoardFit fit = fitBoards({near, far});
  EXPECT_NEAR(fit.apart, 1, 1e-9);
  EXPECT_NEAR(apartAt(near, fit.aFromB), 1, 1e-9);
  EXPECT_NEAR(apartAt(far, kAFromB), 2, 1e-9);
}

TEST(BoardFit, GivesTheIdentityForNothing) {
  const BoardFit fit = fitBoards({});
  EXPECT_EQ(cv::norm(fit.aFromB - cv::Matx44d::eye()), 0);
  EXPECT_EQ(fit.apart, 0);
  EXPECT_EQ(apartAt(SeenBoard(), fit.aFromB), 0);
}

} // namespace
} // namespace velmorn::tool
