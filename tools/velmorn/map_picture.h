// Pictures of a grid with axes and a scale bar.
#ifndef VELMORN64_TOOLS_MAP_PICTURE_H
#define VELMORN64_TOOLS_MAP_PICTURE_H

#include <optional>

#include <opencv2/core.hpp>

#include "velmorn/colour_bar.h"
#include "velmorn/map_grid.h"

namespace velmorn::tool {

// The cells in a frame with numbers along x and y, a scale bar of a round length below, and the
// colour bar to the right. Small grids are enlarged, so that a cell is a square of pixels; of very
// large ones every n-th cell is shown.
//
// cells  CV_8UC3, one pixel for every cell of the grid
cv::Mat drawMapPicture(const cv::Mat& cells, const MapGrid& grid,
                       const std::optional<ColourBar>& bar);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_MAP_PICTURE_H
