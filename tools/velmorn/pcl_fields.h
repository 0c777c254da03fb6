// What PCL's readers give, field by field.
#ifndef VELMORN64_TOOLS_PCL_FIELDS_H
#define VELMORN64_TOOLS_PCL_FIELDS_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include <pcl/PCLPointCloud2.h>

namespace velmorn::tool {

// Reads the file as a whole, once its header is known to be sound. Throws ToolError, without the
// file's name, for a file that is damaged.
pcl::PCLPointCloud2 readPlyFields(const std::string& path);
pcl::PCLPointCloud2 readPcdFields(const std::string& path);

// Number of points that the data holds.
std::size_t pointsIn(const pcl::PCLPointCloud2& cloud);

// The bytes of a point, as many as cloud.point_step.
const std::uint8_t* pointAt(const pcl::PCLPointCloud2& cloud, std::size_t index);

// Where a coordinate lies within the bytes of a point.
struct Coordinate {
  std::size_t offset = 0;
  bool isDouble = false;
};

// Throws ToolError when the points have no such coordinate in single or double precision.
Coordinate coordinateOf(const pcl::PCLPointCloud2& cloud, const std::string& name);
double valueAt(const std::uint8_t* point, const Coordinate& coordinate);

// Where a field of so many bytes lies within the bytes of a point. Nothing when there is none.
std::optional<std::size_t> fieldOffset(const pcl::PCLPointCloud2& cloud, const std::string& name,
                                       std::size_t bytes);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_PCL_FIELDS_H
