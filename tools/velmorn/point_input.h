// The points of one camera from a file: a point cloud or a depth image.
#ifndef VELMORN64_TOOLS_POINT_INPUT_H
#define VELMORN64_TOOLS_POINT_INPUT_H

#include <optional>
#include <string>

#include "velmorn/point_cloud.h"

namespace velmorn::tool {

enum class PointFormat { kPly, kPcd, kXyz, kDepthImage };

// By the name's extension, in upper or lower case. Nothing for an unknown one.
std::optional<PointFormat> pointFormatOf(const std::string& path);

// Reads a file in one of the formats of point clouds. Throws ToolError that names the file.
PointCloud readPointCloud(const std::string& path);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_POINT_INPUT_H
