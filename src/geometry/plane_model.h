// The plane of an extrinsic, and lines that meet it.
#ifndef VELMORN64_GEOMETRY_PLANE_MODEL_H
#define VELMORN64_GEOMETRY_PLANE_MODEL_H

#include "geometry/vector3.h"
#include "velmorn64.h"

namespace velmorn {

// A plane in camera coordinates.
struct PlaneModel {
  Vector3d point;
  Vector3d normal; // of the length it has in the extrinsic
};

// The point of the source frame that targetFromSource maps to the origin: -R^-1 t. False when the
// rotation cannot be inverted; the point is then the zero vector.
bool targetOriginInSource(const tagOzKCamExtrinsic& targetFromSource, Vector3d& origin);

// The plane z = 0 of the plane frame.
PlaneModel planeModelOf(const tagOzKCamExtrinsic& planeFromCam);

// Below this magnitude of normal . direction a line counts as parallel to the plane.
constexpr double kLeastSlope = 1e-6;

// Says by printf that a line does not meet a plane.
void printNoIntersection(const Vector3d& lineDirection, const Vector3d& planeNormal);

} // namespace velmorn

#endif // VELMORN64_GEOMETRY_PLANE_MODEL_H
