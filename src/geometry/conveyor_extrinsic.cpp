// A conveyor's frame from a line of the camera image.
#include <cmath>

#include "foundation/boundary.h"
#include "geometry/extrinsic_rows.h"
#include "geometry/plane_model.h"

namespace velmorn {
namespace {

constexpr double kLeastRayLength = 1e-6;
constexpr double kLeastLineLength = 1e-6; // length unit
constexpr int kTowardsCamera = 0;         // directions of the conveyor frame's z axis
constexpr int kAwayFromCamera = 1;

// Length of a vector in single precision.
float lengthOf(double squaredLength) { return std::sqrt(static_cast<float>(squaredLength)); }

// The pixel's line of sight in camera coordinates, of length 1 up to the rounding of its length to
// float. False when it has no length, which the 1 below the root rules out.
bool rayThrough(const tagOzKPoint2Df32& pixel, const tagOzKCamIntrinsic& intrinsic, Vector3d& ray) {
  const double* K = intrinsic.matrix;
  const double u = (static_cast<double>(pixel.x) - K[2]) / K[0];
  const double v = (static_cast<double>(pixel.y) - K[5]) / K[4];
  const double length = static_cast<double>(lengthOf(v * v + u * u + 1.0));
  if (length < kLeastRayLength) return false;
  ray = Vector3d{u, v, 1.0} / length;
  return true;
}

// Where the ray meets the plane. For a ray along the plane the normal stands in for the point, with
// a message, and the computation goes on: hosts rely on getting a frame all the same.
Vector3d pointOnRay(const Vector3d& ray, const PlaneModel& plane) {
  const double slope = dot(plane.normal, ray);
  if (std::abs(slope) < kLeastSlope) {
    printNoIntersection(ray, plane.normal);
    return plane.normal;
  }
  return ray * (dot(plane.normal, plane.point) / slope);
}

Vector3d conveyorNormal(const Vector3d& planeNormal, int direction) {
  const bool turn = (direction == kTowardsCamera && planeNormal.z > 0) ||
                    (direction == kAwayFromCamera && planeNormal.z < 0);
  return turn ? -planeNormal : planeNormal;
}

int calConveyor(const tagOzKCamExtrinsic& planeFromCam, const tagOzKPoint2Df32& p1,
                const tagOzKPoint2Df32& p2, const tagOzKCamIntrinsic& intrinsic, int direction,
                tagOzKCamExtrinsic* conveyorFromCam) {
  Vector3d ray1, ray2;
  if (!rayThrough(p1, intrinsic, ray1)) return kOzkComputationFailed;
  if (!rayThrough(p2, intrinsic, ray2)) return kOzkGeometryFailed2;
  const PlaneModel plane = planeModelOf(planeFromCam);
  const Vector3d origin = pointOnRay(ray1, plane);
  const Vector3d along = pointOnRay(ray2, plane) - origin;
  const double length = static_cast<double>(lengthOf(dot(along, along)));
  if (length < kLeastLineLength) return kOzkGeometryFailed3;

  const Vector3d x = along / length;
  const Vector3d n = conveyorNormal(plane.normal, direction);
  const Vector3d y = cross(n, x);                         // not brought to length 1
  if (conveyorFromCam == nullptr) return kOzkNullPointer; // after the checks of the geometry

  *conveyorFromCam = planeFromCam; // the last row is the caller's
  const Vector3d rows[3] = {x, y, n};
  for (int r = 0; r < 3; ++r) setRow(*conveyorFromCam, r, rows[r], -dot(rows[r], origin));
  return kOzkSuccess;
}

} // namespace
} // namespace velmorn

int calConveyorExtrinsicByImageLine(tagOzKCamExtrinsic refPlane, tagOzKPoint2Df32 p1,
                                    tagOzKPoint2Df32 p2, tagOzKCamIntrinsic K, int direction,
                                    tagOzKCamExtrinsic* out) {
  return velmorn::guarded(
      [&] { return velmorn::calConveyor(refPlane, p1, p2, K, direction, out); });
}
