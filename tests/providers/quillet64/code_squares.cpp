// Squares with codes, drawn pixel by pixel, and views of whole boards.
#include "providers/quillet64/code_squares.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include <opencv2/calib3d.hpp>

namespace velmorn::quillet {
namespace {

// Middle of the board, turned and tilted, before the camera.
cv::Matx44d camFromBoardOf(const View& view, const tool::CodeBoardSpec& board, double focal) {
  constexpr double kDegree = CV_PI / 180;
  cv::Matx33d turn, tilt;
  cv::Rodrigues(cv::Vec3d(0, 0, view.rotation * kDegree), turn);
  const double axis = view.tiltAxis * kDegree, angle = view.tilt * kDegree;
  cv::Rodrigues(cv::Vec3d(std::cos(axis) * angle, std::sin(axis) * angle, 0), tilt);
  const cv::Matx33d R = tilt * turn;
  const cv::Vec3d middle(view.column * board.square, view.row * board.square, 0);
  const cv::Vec3d T = cv::Vec3d(0, 0, focal * board.square / view.squarePixels) - R * middle;
  return {R(0, 0), R(0, 1), R(0, 2), T[0], R(1, 0), R(1, 1), R(1, 2), T[1],
          R(2, 0), R(2, 1), R(2, 2), T[2], 0,       0,       0,       1};
}

} // namespace

DrawnSquare drawnEmptySquare(int side) {
  DrawnSquare square;
  square.grey = cv::Mat(5 * side, 5 * side, CV_8UC1, cv::Scalar(kDrawnWhite));
  for (int row = 1; row <= 3; ++row)
    for (int column = 1; column <= 3; ++column)
      if ((row + column) % 2 == 1)
        square.grey({column * side, row * side, side, side}).setTo(kDrawnBlack);
  const float from = static_cast<float>(2 * side) - 0.5F, to = from + static_cast<float>(side);
  square.quad = {cv::Point2f(from, from), cv::Point2f(to, from), cv::Point2f(to, to),
                 cv::Point2f(from, to)};
  return square;
}

DrawnSquare drawnSquare(const cv::Mat_<uchar>& dark, int side) {
  DrawnSquare square = drawnEmptySquare(side);
  const int module = 3 * side / 4 / dark.rows, first = 2 * side + side / 8;
  for (int row = 0; row < dark.rows; ++row)
    for (int column = 0; column < dark.cols; ++column)
      if (dark(row, column) != 0)
        square.grey({first + column * module, first + row * module, module, module})
            .setTo(kDrawnBlack);
  return square;
}

BoardView boardView(const View& view) {
  BoardView seen;
  seen.board = {20, 14, view.unit};
  const double focal = 1.1 * view.imageSize.width;
  seen.camera = distortedCamera(view.imageSize, focal);
  seen.camFromBoard = camFromBoardOf(view, seen.board, focal);
  const tool::CodeBoardSymbols symbols(seen.board);
  seen.grey =
      CodeBoardRenderer(seen.camera).render(seen.board, symbols, seen.camFromBoard, view.effects);
  return seen;
}

bool BoardView::hasText(const std::string& text) const {
  for (int b = 1; b <= board.rows; ++b)
    for (int a = 1; a <= board.columns; ++a)
      if (tool::isWhiteSquare(a, b) && tool::codeText(a, b, board.square) == text) return true;
  return false;
}

double BoardView::cornerError(const FoundCode& code) const {
  int a = 0, b = 0;
  std::sscanf(code.text.c_str(), "%d,%d", &a, &b);
  const auto at = [&](int column, int row) {
    return cv::Point3f(static_cast<float>(column * board.square),
                       static_cast<float>(row * board.square), 0);
  };
  const auto truth =
      projectPoints(camera, camFromBoard, {at(a - 1, b), at(a - 1, b - 1), at(a, b - 1), at(a, b)});
  double largest = 0;
  for (std::size_t k = 0; k < 4; ++k)
    largest = std::max(largest, cv::norm(truth[k] - code.squareCorners[k]));
  return largest;
}

} // namespace velmorn::quillet
