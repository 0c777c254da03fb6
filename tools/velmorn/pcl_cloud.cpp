// Point clouds in the formats that PCL reads.
#include "velmorn/pcl_cloud.h"

#include <cstdint>
#include <cstring>

#include <pcl/PCLPointCloud2.h>
#include <pcl/console/print.h>
#include <pcl/io/pcd_io.h>
#include <pcl/io/ply_io.h>

#include "velmorn/pcd_header.h"
#include "velmorn/ply_header.h"
#include "velmorn/tool_error.h"

namespace velmorn::tool {
namespace {

// Where a coordinate lies within the bytes of a point.
struct Coordinate {
  std::size_t offset = 0;
  bool isDouble = false;
};

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

PointCloud pointsOf(const pcl::PCLPointCloud2& read) {
  PointCloud cloud;
  if (read.point_step == 0 || read.data.empty()) return cloud;
  const Coordinate x = coordinateOf(read, "x");
  const Coordinate y = coordinateOf(read, "y");
  const Coordinate z = coordinateOf(read, "z");
  const std::size_t number = read.data.size() / read.point_step;
  cloud.points.reserve(number);
  for (std::size_t i = 0; i < number; ++i) {
    const std::uint8_t* const point = read.data.data() + i * read.point_step;
    addPoint(cloud, valueAt(point, x), valueAt(point, y), valueAt(point, z));
  }
  return cloud;
}

// PCL's readers print what is wrong and return -1, or throw.
template <typename Reader>
PointCloud readWith(Reader reader, const std::string& path) {
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
  return pointsOf(read);
}

} // namespace

PointCloud readPly(const std::string& path) {
  requireSoundPlyHeader(path);
  return readWith(pcl::PLYReader(), path);
}

PointCloud readPcd(const std::string& path) {
  requireSoundPcdHeader(path);
  return readWith(pcl::PCDReader(), path);
}

} // namespace velmorn::tool
