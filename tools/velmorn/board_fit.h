// The rigid transform between two cameras that fits the board positions that both saw.
#ifndef VELMORN64_TOOLS_BOARD_FIT_H
#define VELMORN64_TOOLS_BOARD_FIT_H

#include <vector>

#include <opencv2/core.hpp>

namespace velmorn::tool {

// The same places on the board as two cameras see them, in their frames.
struct SeenBoard {
  std::vector<cv::Vec3d> byA;
  std::vector<cv::Vec3d> byB;
};

struct BoardFit {
  cv::Matx44d aFromB = cv::Matx44d::eye();
  double apart = 0; // root mean square distance that the transform leaves, length unit
};

// Least squares over all places of all boards (Arun, Huang and Blostein 1987).
BoardFit fitBoards(const std::vector<SeenBoard>& boards);

// The distance that a transform leaves at one board: root mean square, length unit.
double apartAt(const SeenBoard& board, const cv::Matx44d& aFromB);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_BOARD_FIT_H
