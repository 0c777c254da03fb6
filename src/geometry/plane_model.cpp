// The plane of an extrinsic, and where a line meets a plane.
#include "geometry/plane_model.h"

#include <cmath>
#include <cstdio>

#include "foundation/boundary.h"
#include "geometry/extrinsic_rows.h"
#include "geometry/matrix_inverse.h"

namespace velmorn {
namespace {

Vector3d vectorOf(const tagOzKPoint3Df64& p) { return {p.x, p.y, p.z}; }

tagOzKPoint3Df64 recordOf(const Vector3d& v) { return {v.x, v.y, v.z}; }

void writePlaneModel(const tagOzKCamExtrinsic* planeFromCam, tagOzKPoint3Df64* planePoint,
                     tagOzKPoint3Df64* planeNormal) {
  if (planeFromCam == nullptr || planePoint == nullptr || planeNormal == nullptr) return;
  const PlaneModel plane = planeModelOf(*planeFromCam);
  *planeNormal = recordOf(plane.normal);
  *planePoint = recordOf(plane.point);
}

int intersectLine(const Vector3d& linePoint, const Vector3d& lineDirection,
                  const Vector3d& planePoint, const Vector3d& planeNormal, tagOzKPoint3Df64* out) {
  const double slope = dot(planeNormal, lineDirection);
  if (std::abs(slope) < kLeastSlope) {
    printNoIntersection(lineDirection, planeNormal);
    return kOzkComputationFailed;
  }
  if (out == nullptr) return kOzkNullPointer;
  const double s = dot(planeNormal, planePoint - linePoint) / slope;
  *out = recordOf(linePoint + lineDirection * s);
  return kOzkSuccess;
}

} // namespace

bool targetOriginInSource(const tagOzKCamExtrinsic& targetFromSource, Vector3d& origin) {
  const double* e = targetFromSource.data;
  const double R[9] = {e[0], e[1], e[2], e[4], e[5], e[6], e[8], e[9], e[10]};
  double inv[9] = {};
  const bool invertible = matrixInverse(R, inv) == 0;
  const Vector3d t = translationOf(targetFromSource);
  origin = {-dot({inv[0], inv[1], inv[2]}, t), -dot({inv[3], inv[4], inv[5]}, t),
            -dot({inv[6], inv[7], inv[8]}, t)};
  return invertible;
}

// A rotation that cannot be inverted is not reported: the point then has no meaning. Hosts get by
// with the normal alone.
PlaneModel planeModelOf(const tagOzKCamExtrinsic& planeFromCam) {
  PlaneModel plane;
  plane.normal = rotationRow(planeFromCam, 2);
  static_cast<void>(targetOriginInSource(planeFromCam, plane.point));
  return plane;
}

void printNoIntersection(const Vector3d& lineDirection, const Vector3d& planeNormal) {
  std::printf("no intesection.line direction is (%f,%f,%f).plane normal is (%f,%f,%f)\n",
              lineDirection.x, lineDirection.y, lineDirection.z, planeNormal.x, planeNormal.y,
              planeNormal.z);
}

} // namespace velmorn

void getPlaneModelFromExtrinsic(tagOzKCamExtrinsic* ext, tagOzKPoint3Df64* planePoint,
                                tagOzKPoint3Df64* planeNormal) {
  velmorn::guardedVoid([&] { velmorn::writePlaneModel(ext, planePoint, planeNormal); });
}

int calLineAndPlaneIntesection(tagOzKPoint3Df64 linePoint, tagOzKPoint3Df64 lineDir,
                               tagOzKPoint3Df64 planePoint, tagOzKPoint3Df64 planeNormal,
                               tagOzKPoint3Df64* out) {
  using velmorn::vectorOf;
  return velmorn::guarded([&] {
    return velmorn::intersectLine(vectorOf(linePoint), vectorOf(lineDir), vectorOf(planePoint),
                                  vectorOf(planeNormal), out);
  });
}
