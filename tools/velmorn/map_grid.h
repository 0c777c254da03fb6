// The grid of an aerial view or a depth background, for drawing and for limits.
#ifndef VELMORN64_TOOLS_MAP_GRID_H
#define VELMORN64_TOOLS_MAP_GRID_H

#include <string>

#include <opencv2/core.hpp>

#include "velmorn64.h"

namespace velmorn::tool {

// Most columns, and most rows, that the tool makes pictures of.
constexpr int kMostCellsAlong = 20000;

// Square cells from (x1, y1) on, x to the right, y downwards.
struct MapGrid {
  double x1 = 0;   // left edge of the first column, length unit
  double y1 = 0;   // upper edge of the first row
  double cell = 1; // side of a cell
  cv::Size size;   // columns and rows
};

// The size of the library's grid over the region. Throws ToolError that says the size when it is
// beyond the tool's limit.
cv::Size mapGridSize(const tagOzKRect2Df32& region, float cell);

// "51 x 41 cells of 2"
std::string gridText(const MapGrid& grid);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_MAP_GRID_H
