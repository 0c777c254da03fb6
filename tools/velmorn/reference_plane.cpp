// The reference plane of a point cloud.
#include "velmorn/reference_plane.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>

#include "velmorn/library_console.h"
#include "velmorn/pose.h"
#include "velmorn/tool_error.h"

namespace velmorn::tool {
namespace {

constexpr std::size_t kMinPoints = 3;
constexpr std::size_t kMostPoints = std::numeric_limits<int>::max();

void requireEnough(const PointCloud& cloud) {
  const std::size_t used = cloud.points.size();
  if (used + cloud.skipped == 0) throw ToolError("no points");
  if (used < kMinPoints) {
    throw ToolError(counted(used, "usable point") + " of " + std::to_string(used + cloud.skipped) +
                    ", a plane needs " + std::to_string(kMinPoints));
  }
  if (used > kMostPoints) throw ToolError("more points than the library takes");
}

std::string reasonOf(int status) {
  if (status == kOzkGeometryFailed2) {
    return "the plane stands on the camera's x axis, which then gives its frame no x axis";
  }
  return "no plane found: the points lie on a line or at one place, or the threshold is too "
         "small for their noise or, in single precision, for their number";
}

double distanceFrom(const cv::Vec4d& plane, const tagOzKPoint3Df32& point) {
  return std::abs(plane[0] * static_cast<double>(point.x) +
                  plane[1] * static_cast<double>(point.y) +
                  plane[2] * static_cast<double>(point.z) + plane[3]);
}

std::size_t inliersOf(const cv::Vec4d& plane, const PointCloud& cloud, double threshold) {
  return static_cast<std::size_t>(std::count_if(
      cloud.points.begin(), cloud.points.end(),
      [&](const tagOzKPoint3Df32& point) { return distanceFrom(plane, point) < threshold; }));
}

} // namespace

PlaneModel planeModelOf(const tagOzKCamExtrinsic& planeFromCam) {
  tagOzKCamExtrinsic input = planeFromCam;
  tagOzKPoint3Df64 point{};
  tagOzKPoint3Df64 normal{};
  getPlaneModelFromExtrinsic(&input, &point, &normal);
  return {{normal.x, normal.y, normal.z, planeFromCam.data[11]}, {point.x, point.y, point.z}};
}

nlohmann::ordered_json planeJson(const PlaneModel& model) {
  nlohmann::ordered_json json;
  const cv::Vec4d& c = model.coefficients;
  json["coefficients"] = {c[0] + 0, c[1] + 0, c[2] + 0, c[3] + 0};
  json["point"] = {model.point[0] + 0, model.point[1] + 0, model.point[2] + 0};
  return json;
}

ReferencePlane fitReferencePlane(PointCloud& cloud, float threshold) {
  requireEnough(cloud);
  ReferencePlane plane;
  float meanDistance = 0;
  int status = 0;
  {
    const LibraryConsole console;
    status = ozkCalRefPlaneExtrinsic(cloud.points.data(), static_cast<int>(cloud.points.size()),
                                     threshold, &plane.planeFromCam, &meanDistance);
  }
  if (status != kOzkSuccess) throw ToolError(reasonOf(status));
  if (!isFinitePose(poseFrom(plane.planeFromCam)) || !std::isfinite(meanDistance)) {
    throw ToolError(
        "the plane's frame came out with a number that is not finite, as it does for a plane whose "
        "normal is the camera's y axis or for coordinates beyond single precision");
  }
  plane.model = planeModelOf(plane.planeFromCam);
  plane.inliers = inliersOf(plane.model.coefficients, cloud, static_cast<double>(threshold));
  plane.meanDistance = static_cast<double>(meanDistance);
  return plane;
}

} // namespace velmorn::tool
