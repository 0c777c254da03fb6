// The size of a grid of square cells over a region.
#include "depth/grid_size.h"

#include <cmath>
#include <limits>

namespace velmorn {

double cellsAlong(float from, float to, float step) {
  const float span = to - from;
  const float quotient = span / step;
  return static_cast<double>(std::trunc(quotient)) + 1.0;
}

std::optional<GridSize> aerialGridSize(const tagOzKRect2Df32& region, float resolution) {
  constexpr double kLargest = std::numeric_limits<int>::max();
  const double width = cellsAlong(region.x1, region.x2, resolution);
  const double height = cellsAlong(region.y1, region.y2, resolution);
  // Written so that NaN fails too.
  const bool isGrid = width >= 0 && width <= kLargest && height >= 0 && height <= kLargest &&
                      width * height <= kLargest;
  if (!isGrid) return std::nullopt;
  return GridSize{static_cast<int>(width), static_cast<int>(height)};
}

} // namespace velmorn
