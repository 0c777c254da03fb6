// Point clouds in the formats that PCL reads.
#include "velmorn/pcl_cloud.h"

#include "velmorn/pcl_fields.h"

namespace velmorn::tool {
namespace {

PointCloud pointsOf(const pcl::PCLPointCloud2& read) {
  PointCloud cloud;
  const std::size_t number = pointsIn(read);
  if (number == 0) return cloud;
  const Coordinate x = coordinateOf(read, "x");
  const Coordinate y = coordinateOf(read, "y");
  const Coordinate z = coordinateOf(read, "z");
  cloud.points.reserve(number);
  for (std::size_t i = 0; i < number; ++i) {
    const std::uint8_t* const point = pointAt(read, i);
    addPoint(cloud, valueAt(point, x), valueAt(point, y), valueAt(point, z));
  }
  return cloud;
}

} // namespace

PointCloud readPly(const std::string& path) { return pointsOf(readPlyFields(path)); }

PointCloud readPcd(const std::string& path) { return pointsOf(readPcdFields(path)); }

} // namespace velmorn::tool
