// The square that the search starts from.
#include "brantis64/seed_square.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "brantis64/extractor_status.h"

namespace velmorn::brantis {
namespace {

constexpr double kUnitTolerance = 0.01; // of a square, for coordinates rounded to float
constexpr double kFarthestIndex = 1e5;  // squares; beyond, float coordinates are too coarse
constexpr double kMinSide = 4;          // pixels
constexpr double kFarthestPixel = 1e6;

// A corner is at whole multiples of the unit.
bool isGridPoint(const cv::Point2f& onBoard, double unit, GridPoint& at) {
  const double column = static_cast<double>(onBoard.x) / unit;
  const double row = static_cast<double>(onBoard.y) / unit;
  if (!(std::abs(column) < kFarthestIndex && std::abs(row) < kFarthestIndex)) return false;
  at = {cvRound(column), cvRound(row)};
  return std::abs(column - at.column) < kUnitTolerance && std::abs(row - at.row) < kUnitTolerance;
}

// The difference of two rounded coordinates gives the unit roughly; the largest coordinate, whose
// whole multiple it then tells, gives it as well as a float can.
double unitOf(const std::array<BoardCorner, 4>& seeds) {
  const double rough =
      static_cast<double>(seeds[2].onBoard.x) - static_cast<double>(seeds[1].onBoard.x);
  if (!(rough > 0) || !std::isfinite(rough)) return 0;
  double largest = 0;
  for (const BoardCorner& seed : seeds)
    for (float coordinate : {seed.onBoard.x, seed.onBoard.y})
      if (std::abs(static_cast<double>(coordinate)) > std::abs(largest))
        largest = static_cast<double>(coordinate);
  return largest / std::round(largest / rough);
}

bool readGrid(const std::array<BoardCorner, 4>& seeds, SeedSquare& square) {
  const double unit = unitOf(seeds);
  if (!(unit > 0) || !isGridPoint(seeds[1].onBoard, unit, square.upperLeft)) return false;
  for (std::size_t k = 0; k < 4; ++k) {
    GridPoint at;
    if (!isGridPoint(seeds[k].onBoard, unit, at) ||
        !(at == square.upperLeft + SeedSquare::kCorners[k]))
      return false;
  }
  square.unit = unit;
  return true;
}

// Positive for a corner that turns as the board's does.
double turn(const std::array<cv::Point2d, 4>& p, std::size_t k) {
  return (p[(k + 1) % 4] - p[k]).cross(p[(k + 2) % 4] - p[(k + 1) % 4]);
}

int checkOutline(const std::array<cv::Point2d, 4>& p) {
  int right = 0, left = 0;
  double shortest = std::numeric_limits<double>::infinity();
  for (std::size_t k = 0; k < 4; ++k) {
    if (!(std::abs(p[k].x) < kFarthestPixel && std::abs(p[k].y) < kFarthestPixel))
      return kNoSquareInImage;
    const cv::Point2d side = p[(k + 1) % 4] - p[k];
    shortest = std::min(shortest, std::hypot(side.x, side.y));
    if (turn(p, k) > 0) ++right;
    if (turn(p, k) < 0) ++left;
  }
  if (shortest < kMinSide) return kTooSmall;
  if (left == 4) return kMirrored;
  return right == 4 ? kFound : kNoSquareInImage;
}

} // namespace

int readSeeds(const std::array<BoardCorner, 4>& seeds, SeedSquare& square) {
  SeedSquare read;
  if (!readGrid(seeds, read)) return kNoUnitSquare;
  for (std::size_t k = 0; k < 4; ++k) read.pixels[k] = seeds[k].pixel;
  const int status = checkOutline(read.pixels);
  if (status == kFound) square = read;
  return status;
}

LocalFrame frameAtCorner(const SeedSquare& square, GridPoint corner, double factor) {
  // In squares from the wanted corner, the part's corners are at (1 - 1 / factor) / 2 and one minus
  // that inside the square.
  const double margin = (1 - 1 / factor) / 2;
  std::vector<GridSample> samples;
  for (std::size_t k = 0; k < 4; ++k) {
    const GridPoint at = SeedSquare::kCorners[k];
    samples.push_back({(at.column == 0 ? margin : 1 - margin) - corner.column,
                       (at.row == 0 ? margin : 1 - margin) - corner.row, square.pixels[k], 1});
  }
  LocalFrame frame;
  frameFromSamples(samples, frame);
  return frame;
}

} // namespace velmorn::brantis
