// Takes out corners that do not fit their neighbours.
#include "brantis64/outlier_check.h"

#include <cmath>
#include <limits>
#include <vector>

#include "brantis64/corner_prediction.h"

namespace velmorn::brantis {
namespace {

// What noise and what a lens bends beyond a homography may make a prediction err.
constexpr double kPixels = 0.7;
constexpr double kSquares = 0.025;
constexpr double kSquaresAtRim = 0.06; // where the neighbours lie on one side
constexpr int kFewNeighbours = 12;     // of 24 within two steps

int neighbourCount(const CornerGrid& grid, GridPoint at, int spacing) {
  int count = -1; // without itself
  for (int dy = -2; dy <= 2; ++dy)
    for (int dx = -2; dx <= 2; ++dx)
      if (grid.find(at + spacing * GridPoint{dx, dy}) != nullptr) ++count;
  return count;
}

bool isAtRim(const CornerGrid& grid, GridPoint at) {
  for (int spacing = 1; spacing <= grid.spacing(); ++spacing)
    if (neighbourCount(grid, at, spacing) >= kFewNeighbours) return false;
  return true;
}

// How far a corner is from its prediction, by what is allowed.
double error(const CornerGrid& grid, const GridCorner& corner) {
  LocalFrame frame;
  if (!predictCorner(grid, corner.at, frame)) return std::numeric_limits<double>::infinity();
  const cv::Point2d off = corner.pixel - frame.pixel;
  const double side = std::sqrt(std::abs(frame.columnStep.cross(frame.rowStep)));
  const double squares = isAtRim(grid, corner.at) ? kSquaresAtRim : kSquares;
  return std::hypot(off.x, off.y) / (kPixels + squares * side);
}

// A wrong corner makes its neighbours err too, but less than itself.
bool isWorstAround(const CornerGrid& grid, const GridCorner& corner, double own) {
  for (int dy = -2; dy <= 2; ++dy)
    for (int dx = -2; dx <= 2; ++dx) {
      const GridCorner* other =
          dx == 0 && dy == 0 ? nullptr : grid.find(corner.at + GridPoint{dx, dy});
      if (other != nullptr && error(grid, *other) > own) return false;
    }
  return true;
}

} // namespace

std::size_t removeOutliers(CornerGrid& grid) {
  std::size_t removed = 0;
  for (;;) {
    std::vector<GridPoint> outliers;
    for (const GridCorner& corner : grid.corners()) {
      const double own = error(grid, corner);
      if (own > 1 && isWorstAround(grid, corner, own)) outliers.push_back(corner.at);
    }
    if (outliers.empty()) return removed;
    for (GridPoint at : outliers) grid.erase(at);
    removed += outliers.size();
  }
}

} // namespace velmorn::brantis
