// The points that a command works on.
#ifndef VELMORN64_TOOLS_POINT_CLOUD_H
#define VELMORN64_TOOLS_POINT_CLOUD_H

#include <cmath>
#include <cstddef>
#include <vector>

#include "velmorn64.h"

namespace velmorn::tool {

// Points in camera coordinates.
struct PointCloud {
  std::vector<tagOzKPoint3Df32> points; // finite, in the file's order
  std::size_t skipped = 0;              // points left out: not finite, or without a measurement
};

// Takes the point in when it is finite in single precision, else counts it as skipped.
inline void addPoint(PointCloud& cloud, double x, double y, double z) {
  const tagOzKPoint3Df32 point{static_cast<float>(x), static_cast<float>(y), static_cast<float>(z)};
  if (std::isfinite(point.x) && std::isfinite(point.y) && std::isfinite(point.z)) {
    cloud.points.push_back(point);
  } else {
    ++cloud.skipped;
  }
}

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_POINT_CLOUD_H
