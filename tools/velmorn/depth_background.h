// The depth background of a point cloud, by the library.
#ifndef VELMORN64_TOOLS_DEPTH_BACKGROUND_H
#define VELMORN64_TOOLS_DEPTH_BACKGROUND_H

#include <cstddef>

#include <opencv2/core.hpp>

#include "velmorn/map_grid.h"
#include "velmorn/point_cloud.h"

namespace velmorn::tool {

struct BackgroundRequest {
  tagOzKRect2Df32 region{}; // x/y plane, length unit
  float cell = 0;           // side of a cell, length unit
  bool keepHighest = false; // z of a cell: its highest instead of its lowest point
  int minPoints = 1;        // least number of points
};

struct DepthBackground {
  MapGrid grid;
  cv::Mat heights; // CV_32FC1, z of every cell, length unit
};

// The smallest region with all of the points. There has to be one.
tagOzKRect2Df32 boundingRegion(const PointCloud& cloud);

// The number of points in the region, its border included.
std::size_t pointsIn(const PointCloud& cloud, const tagOzKRect2Df32& region);

// Throws ToolError that says why there is no background.
DepthBackground buildBackground(PointCloud& cloud, const BackgroundRequest& request);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_DEPTH_BACKGROUND_H
