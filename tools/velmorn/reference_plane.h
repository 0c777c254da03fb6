// The reference plane of a point cloud.
#ifndef VELMORN64_TOOLS_REFERENCE_PLANE_H
#define VELMORN64_TOOLS_REFERENCE_PLANE_H

#include <cstddef>

#include <nlohmann/json.hpp>
#include <opencv2/core.hpp>

#include "velmorn/point_cloud.h"
#include "velmorn64.h"

namespace velmorn::tool {

// A plane in camera coordinates: a x + b y + c z + d = 0.
struct PlaneModel {
  cv::Vec4d coefficients; // a, b, c, the normal, and d, length unit
  cv::Vec3d point;        // on the plane: its frame's origin
};

struct ReferencePlane {
  tagOzKCamExtrinsic planeFromCam{};
  PlaneModel model;
  std::size_t inliers = 0; // points nearer to the plane than the threshold
  double meanDistance = 0; // of all points, length unit
};

// The plane's model by the library, from its extrinsic.
PlaneModel planeModelOf(const tagOzKCamExtrinsic& planeFromCam);

// "plane" as the tool's files have it.
nlohmann::ordered_json planeJson(const PlaneModel& model);

// Fits the plane by the library. Throws ToolError that says why there is none.
ReferencePlane fitReferencePlane(PointCloud& cloud, float threshold);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_REFERENCE_PLANE_H
