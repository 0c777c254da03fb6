// The size of a grid of square cells over a region: aerial views and depth backgrounds.
#ifndef VELMORN64_DEPTH_GRID_SIZE_H
#define VELMORN64_DEPTH_GRID_SIZE_H

#include <optional>

#include "velmorn64.h"

namespace velmorn {

// Cells along one side of a region, trunc((to - from) / step) + 1 with a quotient in single
// precision. The added one gives both edges a cell.
//
// from, to  the side's ends, length unit
// step      length units per cell
//
// Returned in double, which holds every such number exactly: it may be negative, beyond any
// integer, infinite or NaN, whatever the arguments make of it.
double cellsAlong(float from, float to, float step);

struct GridSize {
  int width;  // columns
  int height; // rows
};

// The grid of an aerial view; nothing when it is negative, NaN, or has more cells than an int can
// number. A grid of 0 columns or rows is one.
std::optional<GridSize> aerialGridSize(const tagOzKRect2Df32& region, float resolution);

} // namespace velmorn

#endif // VELMORN64_DEPTH_GRID_SIZE_H
