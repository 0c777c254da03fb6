// The depth background of a point cloud, by the library.
#include "velmorn/depth_background.h"

#include <algorithm>
#include <limits>
#include <string>

#include "velmorn/library_console.h"
#include "velmorn/tool_error.h"

namespace velmorn::tool {
namespace {

constexpr std::size_t kMostPoints = std::numeric_limits<int>::max();

std::string reasonOf(int status, const PointCloud& cloud, const BackgroundRequest& request) {
  switch (status) {
    case kOzkTooFewPoints:
      return counted(cloud.points.size(), "usable point") + ", at least " +
             std::to_string(request.minPoints) + " are asked for";
    case kOzkGridTooLarge:
    case kOzkGridEmpty:
      return "the region does not fit the grid"; // the grid's size is checked before
    case kOzkNoGridMemory:
      return "there is no memory for the grid";
    case kOzkNoPointInRegion:
      return "no point is in the region";
    default:
      return "the library refused the points with status " + std::to_string(status);
  }
}

} // namespace

tagOzKRect2Df32 boundingRegion(const PointCloud& cloud) {
  const auto [left, right] =
      std::minmax_element(cloud.points.begin(), cloud.points.end(),
                          [](const auto& a, const auto& b) { return a.x < b.x; });
  const auto [upper, lower] =
      std::minmax_element(cloud.points.begin(), cloud.points.end(),
                          [](const auto& a, const auto& b) { return a.y < b.y; });
  return {left->x, upper->y, right->x, lower->y};
}

std::size_t pointsIn(const PointCloud& cloud, const tagOzKRect2Df32& region) {
  return static_cast<std::size_t>(
      std::count_if(cloud.points.begin(), cloud.points.end(), [&](const tagOzKPoint3Df32& p) {
        return p.x >= region.x1 && p.x <= region.x2 && p.y >= region.y1 && p.y <= region.y2;
      }));
}

DepthBackground buildBackground(PointCloud& cloud, const BackgroundRequest& request) {
  if (cloud.points.size() > kMostPoints) throw ToolError("more points than the library takes");
  tagOzKRect2Df32 region = request.region;
  DepthBackground background;
  background.grid = {static_cast<double>(region.x1), static_cast<double>(region.y1),
                     static_cast<double>(request.cell), mapGridSize(region, request.cell)};
  background.heights.create(background.grid.size, CV_32FC1);
  cv::Size size;
  int status = 0;
  {
    const LibraryConsole console;
    status = bulidDepthBackgroundByPointCloud(
        cloud.points.data(), static_cast<int>(cloud.points.size()), request.cell, &region,
        background.heights.ptr<float>(), &size.width, &size.height, request.keepHighest ? 1 : 0,
        request.minPoints, kMostCellsAlong);
  }
  if (status != kOzkSuccess) throw ToolError(reasonOf(status, cloud, request));
  return background;
}

} // namespace velmorn::tool
