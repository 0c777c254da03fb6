// The window of a corner's final fit, by the corners around it.
#include "brantis64/window_choice.h"

#include <algorithm>
#include <cmath>

#include "brantis64/corner_prediction.h"
#include "brantis64/square_layout.h"

namespace velmorn::brantis {
namespace {

constexpr double kRadius = 16;     // pixels
constexpr double kBendLength = 90; // pixels on each side that a line's bend is taken over
constexpr int kMinBendReach = 2;   // squares
constexpr int kMaxBendReach = 5;
constexpr double kFinalTolerance = 0.01; // pixels

// How far to use the pattern in one direction, squares.
double reachTowards(bool goesOn, double blurInSquares) {
  if (goesOn) return std::clamp(1 - 3 * blurInSquares, 0.4, 0.75);
  return std::max(0.3, 0.5 - 2 * blurInSquares);
}

int bendReach(const cv::Point2d& step) {
  return std::clamp(cvRound(kBendLength / std::hypot(step.x, step.y)), kMinBendReach,
                    kMaxBendReach);
}

} // namespace

double lineBend(const CornerGrid& grid, GridPoint at, GridPoint step, int reach,
                const cv::Point2d& towards) {
  const GridCorner* centre = grid.find(at);
  if (centre == nullptr) return 0;
  const GridCorner *first = centre, *last = centre;
  std::vector<cv::Point2d> pixels{centre->pixel};
  for (int sign : {-1, 1})
    for (int k = 1, missing = 0; k <= reach && missing < grid.spacing(); ++k) {
      const GridCorner* next = grid.find(at + sign * k * step);
      if (next == nullptr) {
        ++missing;
        continue;
      }
      missing = 0;
      pixels.push_back(next->pixel);
      (sign < 0 ? first : last) = next;
    }
  if (pixels.size() < 3) return 0;

  // Least squares of height = c + a s + b s^2 over the chord from the first to the last.
  const cv::Point2d chord = last->pixel - first->pixel;
  const double length = std::hypot(chord.x, chord.y);
  cv::Point2d normal(-chord.y / length, chord.x / length);
  if (normal.dot(towards) < 0) normal = -normal;
  cv::Matx33d matrix = cv::Matx33d::zeros();
  cv::Vec3d right(0, 0, 0);
  for (const cv::Point2d& p : pixels) {
    const double s = (p - centre->pixel).dot(chord) / (length * length);
    const cv::Vec3d powers(1, s, s * s);
    matrix += powers * powers.t();
    right += (p - centre->pixel).dot(normal) * powers;
  }
  const cv::Vec3d fit = matrix.inv() * right;
  return fit[2] / (length * length);
}

bool chooseWindow(const CornerGrid& grid, const GridCorner& corner, double blur, CornerTask& task) {
  LocalFrame frame;
  if (!predictCorner(grid, corner.at, frame)) return false;
  frame.pixel = corner.pixel;
  const SquareCoordinates squares(frame);
  const double blurAcross = blur / squares.columnWidth(), blurDown = blur / squares.rowHeight();
  const auto goesOn = [&](GridPoint step) {
    for (int k = 1; k <= grid.spacing(); ++k)
      if (grid.find(corner.at + k * step) != nullptr) return true;
    return false;
  };

  task = CornerTask{};
  task.frame = frame;
  task.whiteLowerRight = whiteLowerRight(corner.at);
  task.blur = blur;
  task.contrast = corner.contrast;
  task.radius = kRadius;
  task.tolerance = kFinalTolerance;
  task.reach.left = reachTowards(goesOn({-1, 0}), blurAcross);
  task.reach.right = reachTowards(goesOn({1, 0}), blurAcross);
  task.reach.up = reachTowards(goesOn({0, -1}), blurDown);
  task.reach.down = reachTowards(goesOn({0, 1}), blurDown);
  task.rowLineBend = lineBend(grid, corner.at, {1, 0}, bendReach(frame.columnStep), frame.rowStep);
  task.columnLineBend =
      lineBend(grid, corner.at, {0, 1}, bendReach(frame.rowStep), frame.columnStep);
  return true;
}

} // namespace velmorn::brantis
