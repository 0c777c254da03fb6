// The grid of an aerial view or a depth background, for drawing and for limits.
#include "velmorn/map_grid.h"

#include "depth/grid_size.h"
#include "velmorn/round_numbers.h"
#include "velmorn/tool_error.h"

namespace velmorn::tool {

cv::Size mapGridSize(const tagOzKRect2Df32& region, float cell) {
  const double columns = cellsAlong(region.x1, region.x2, cell);
  const double rows = cellsAlong(region.y1, region.y2, cell);
  const bool isMappable =
      columns >= 1 && rows >= 1 && columns <= kMostCellsAlong && rows <= kMostCellsAlong;
  if (!isMappable) {
    throw ToolError("the grid would have " + shortNumberText(columns) + " x " +
                    shortNumberText(rows) + " cells, it may have 1 to " +
                    std::to_string(kMostCellsAlong) + " each way; take larger cells");
  }
  return {static_cast<int>(columns), static_cast<int>(rows)};
}

std::string gridText(const MapGrid& grid) {
  return std::to_string(grid.size.width) + " x " + std::to_string(grid.size.height) + " cells of " +
         shortNumberText(grid.cell);
}

} // namespace velmorn::tool
