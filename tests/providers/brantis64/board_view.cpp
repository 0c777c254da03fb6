// Images of a data-code board for the extractor's tests.
#include "providers/brantis64/board_view.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <set>

#include <opencv2/calib3d.hpp>

namespace velmorn::brantis {
namespace {

// Far off the axis the lens model folds back into the image; what is there cannot be seen. The
// image's corners are at 0.7.
constexpr double kFold = 0.9;

cv::Matx33d turn(const cv::Vec3d& axis) {
  cv::Matx33d rotation;
  cv::Rodrigues(axis, rotation);
  return rotation;
}

cv::Matx44d viewPose(const ViewOptions& options, double focal) {
  const double degree = CV_PI / 180, tilt = options.tilt * degree;
  const double direction = options.tiltDirection * degree;
  const cv::Matx33d R = turn({std::cos(direction) * tilt, std::sin(direction) * tilt, 0}) *
                        turn({0, 0, options.roll * degree});
  const cv::Vec3d seen(options.lookAt.x * options.board.columns * options.board.square,
                       options.lookAt.y * options.board.rows * options.board.square, 0);
  const cv::Vec3d T =
      cv::Vec3d(0, 0, focal * options.board.square / options.squarePixels) - R * seen;
  return {R(0, 0), R(0, 1), R(0, 2), T[0], R(1, 0), R(1, 1), R(1, 2), T[1],
          R(2, 0), R(2, 1), R(2, 2), T[2], 0,       0,       0,       1};
}

} // namespace

double BoardView::offAxis(cv::Point2d p) const {
  const cv::Vec4d inCamera = camFromBoard * cv::Vec4d(p.x, p.y, 0, 1);
  return std::hypot(inCamera[0], inCamera[1]) / inCamera[2];
}

cv::Point2f BoardView::project(double x, double y) const {
  return projectPoints(camera, camFromBoard, {{static_cast<float>(x), static_cast<float>(y), 0}})
      .front();
}

std::vector<CodeBoardCorner> BoardView::visibleCorners(double margin) const {
  std::vector<CodeBoardCorner> corners =
      visibleCodeBoardCorners(camera, board, camFromBoard, margin);
  const auto isFar = [this](const CodeBoardCorner& c) {
    return offAxis({static_cast<double>(c.onBoard.x), static_cast<double>(c.onBoard.y)}) > kFold;
  };
  corners.erase(std::remove_if(corners.begin(), corners.end(), isFar), corners.end());
  return corners;
}

cv::Point BoardView::centralSquare() const {
  cv::Point best;
  double nearest = std::numeric_limits<double>::infinity();
  for (int b = 1; b <= board.rows; ++b)
    for (int a = 1; a <= board.columns; ++a) {
      if (!tool::isWhiteSquare(a, b)) continue;
      if (offAxis({(a - 0.5) * board.square, (b - 0.5) * board.square}) > kFold) continue;
      const cv::Point2f p = project((a - 0.5) * board.square, (b - 0.5) * board.square);
      const double distance = std::hypot(static_cast<double>(p.x) - camera.imageSize.width / 2.0,
                                         static_cast<double>(p.y) - camera.imageSize.height / 2.0);
      if (distance >= nearest) continue;
      nearest = distance;
      best = {a, b};
    }
  return best;
}

std::array<BoardCorner, 4> BoardView::seedsOf(cv::Point square, double share) const {
  const std::array<cv::Point, 4> corners{{{-1, 0}, {-1, -1}, {0, -1}, {0, 0}}};
  const double s = board.square;
  std::array<BoardCorner, 4> seeds;
  for (std::size_t k = 0; k < 4; ++k) {
    const double x = square.x + corners[k].x, y = square.y + corners[k].y;
    const double middleX = square.x - 0.5, middleY = square.y - 0.5;
    const cv::Point2f p =
        project((middleX + share * (x - middleX)) * s, (middleY + share * (y - middleY)) * s);
    seeds[k].pixel = {std::round(p.x), std::round(p.y)};
    seeds[k].onBoard = {static_cast<float>(x * s), static_cast<float>(y * s)};
  }
  return seeds;
}

BoardView makeView(const ViewOptions& options) {
  const double focal = 0.9 * options.imageSize.width;
  BoardView view;
  view.board = options.board;
  view.camera = options.distorted ? distortedCamera(options.imageSize, focal)
                                  : plainCamera(options.imageSize, focal);
  view.camFromBoard = viewPose(options, focal);
  const tool::CodeBoardSymbols symbols(options.board);
  cv::Mat_<float> picture =
      CodeBoardRenderer(view.camera).renderPlain(options.board, symbols, view.camFromBoard);
  for (int y = 0; y < picture.rows; ++y)
    for (int x = 0; x < picture.cols; ++x)
      picture(y, x) *= static_cast<float>(1 + options.light * (1.0 * x / picture.cols - 0.5));
  view.image = tool::finishImage(picture, options.effects);
  return view;
}

Comparison compare(const BoardView& view, const std::vector<BoardCorner>& corners) {
  using Label = std::pair<int, int>;
  std::map<Label, cv::Point2f> truth;
  for (const CodeBoardCorner& c : view.visibleCorners(0)) truth[{c.column, c.row}] = c.pixel;

  Comparison result;
  double squares = 0;
  std::set<Label> right;
  for (const BoardCorner& corner : corners) {
    const double s = view.board.square;
    const Label label{cvRound(static_cast<double>(corner.onBoard.x) / s),
                      cvRound(static_cast<double>(corner.onBoard.y) / s)};
    const auto known = truth.find(label);
    const double error =
        known == truth.end() ? 1 : cv::norm(cv::Point2d(corner.pixel) - cv::Point2d(known->second));
    if (!(error <= 0.5) || !right.insert(label).second) {
      ++result.wrong;
      continue;
    }
    squares += error * error;
  }
  result.rms = std::sqrt(squares / static_cast<double>(right.size()));
  for (const CodeBoardCorner& c : view.visibleCorners(5)) {
    ++result.visible;
    result.found += right.count({c.column, c.row});
  }
  return result;
}

} // namespace velmorn::brantis
