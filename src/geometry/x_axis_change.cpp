// A plane frame with another x axis.
#include <cmath>

#include "foundation/boundary.h"
#include "foundation/log.h"
#include "geometry/extrinsic_rows.h"
#include "geometry/plane_model.h"

namespace velmorn {
namespace {

constexpr double kLeastAxisLength = 0.0001;

int changeXAxis(const tagOzKCamExtrinsic& planeFromCam, const Vector3f& xAxis,
                tagOzKCamExtrinsic& newPlaneFromCam) {
  const float length = std::sqrt(dot(xAxis, xAxis));
  if (static_cast<double>(length) < kLeastAxisLength) return kOzkXAxisTooShort;
  const Vector3d x = widened(xAxis / length);

  Vector3d originInCam;
  if (!targetOriginInSource(planeFromCam, originInCam)) {
    printConsole("matrixInverse failed\n");
    return kOzkRotationNotInvertible;
  }
  // Neither is brought to length 1: where x is not perpendicular to n, both are as long as the sine
  // of the angle between the two. Hosts rely on it.
  const Vector3d n = rotationRow(planeFromCam, 2);
  const Vector3d newY = cross(n, x);
  const float yLength = static_cast<float>(std::sqrt(dot(newY, newY)));
  if (static_cast<double>(yLength) < kLeastAxisLength) return kOzkXAxisAlongNormal;
  const Vector3d newX = cross(newY, n);

  newPlaneFromCam = extrinsicWithoutRows();
  const Vector3d rows[3] = {newX, newY, n};
  for (int r = 0; r < 3; ++r) setRow(newPlaneFromCam, r, rows[r], -dot(rows[r], originInCam));
  return kOzkSuccess;
}

} // namespace
} // namespace velmorn

int changeExtrisicByNewXAxis(tagOzKCamExtrinsic ext, tagOzKPoint3Df32 xAxis,
                             tagOzKCamExtrinsic& out) {
  return velmorn::guarded([&] {
    return velmorn::changeXAxis(ext, {xAxis.x, xAxis.y, xAxis.z}, out);
  });
}
