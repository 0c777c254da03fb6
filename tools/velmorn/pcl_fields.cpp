// What PCL's readers give, field by field.
#include "velmorn/pcl_fields.h"

#include <cstring>

#include <pcl/console/print.h>
#include <pcl/io/pcd_io.h>
#include <pcl/io/ply_io.h>

#include "velmorn/pcd_header.h"
#include "velmorn/ply_header.h"
#include "velmorn/tool_error.h"

namespace velmorn::tool {
namespace {

// PCL's readers print what is wrong and return -1, or throw.
template <typename Reader>
pcl::PCLPointCloud2 readWith(Reader reader, const std::string& path) {
  pcl::console::setVerbosityLevel(pcl::console::L_ALWAYS);
  pcl::PCLPointCloud2 read;
  Eigen::Vector4f origin;
  Eigen::Quaternionf orientation;
  int version = 0;
  bool isRead = false;
  try {
    isRead = reader.read(path, read, origin, orientation, version) >= 0;
  } catch (const std::exception&) {
    isRead = false;
  }
  if (!isRead) throw ToolError("damaged: its content does not fit its header");
  return read;
}

std::size_t sizeOf(const pcl::PCLPointField& field) {
  return static_cast<std::size_t>(pcl::getFieldSize(field.datatype)) * field.count;
}

} // namespace

pcl::PCLPointCloud2 readPlyFields(const std::string& path) {
  requireSoundPlyHeader(path);
  return readWith(pcl::PLYReader(), path);
}

pcl::PCLPointCloud2 readPcdFields(const std::string& path) {
  requireSoundPcdHeader(path);
  return readWith(pcl::PCDReader(), path);
}

std::size_t pointsIn(const pcl::PCLPointCloud2& cloud) {
  return cloud.point_step == 0 ? 0 : cloud.data.size() / cloud.point_step;
}

const std::uint8_t* pointAt(const pcl::PCLPointCloud2& cloud, std::size_t index) {
  return cloud.data.data() + index * cloud.point_step;
}

Coordinate coordinateOf(const pcl::PCLPointCloud2& cloud, const std::string& name) {
  for (const pcl::PCLPointField& field : cloud.fields) {
    if (field.name != name) continue;
    const bool isDouble = field.datatype == pcl::PCLPointField::FLOAT64;
    if (!isDouble && field.datatype != pcl::PCLPointField::FLOAT32) {
      throw ToolError(inQuotes(name) + " is not a floating-point number");
    }
    if (field.offset + (isDouble ? sizeof(double) : sizeof(float)) > cloud.point_step) {
      throw ToolError(inQuotes(name) + " lies outside of the points");
    }
    return {field.offset, isDouble};
  }
  throw ToolError("the points have no " + inQuotes(name));
}

double valueAt(const std::uint8_t* point, const Coordinate& coordinate) {
  double wide = 0;
  float narrow = 0;
  if (coordinate.isDouble) {
    std::memcpy(&wide, point + coordinate.offset, sizeof(wide));
    return wide;
  }
  std::memcpy(&narrow, point + coordinate.offset, sizeof(narrow));
  return static_cast<double>(narrow);
}

std::optional<std::size_t> fieldOffset(const pcl::PCLPointCloud2& cloud, const std::string& name,
                                       std::size_t bytes) {
  for (const pcl::PCLPointField& field : cloud.fields) {
    const bool fits = sizeOf(field) == bytes && field.offset + bytes <= cloud.point_step;
    if (field.name == name && fits) return field.offset;
  }
  return std::nullopt;
}

} // namespace velmorn::tool
