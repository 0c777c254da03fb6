// Point clouds in the formats that PCL reads.
#ifndef VELMORN64_TOOLS_PCL_CLOUD_H
#define VELMORN64_TOOLS_PCL_CLOUD_H

#include <string>

#include "velmorn/point_cloud.h"

namespace velmorn::tool {

// The points of a PLY or PCD file, text or binary, in single or double precision. Throws ToolError,
// without the file's name, for a file that is damaged or has no x, y and z.
//
// path  a regular file
PointCloud readPly(const std::string& path);
PointCloud readPcd(const std::string& path);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_PCL_CLOUD_H
