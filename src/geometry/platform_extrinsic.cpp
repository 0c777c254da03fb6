// A platform's frame from two points of an aerial image of the reference plane.
#include <cmath>
#include <locale>
#include <sstream>

#include "foundation/boundary.h"
#include "foundation/log.h"
#include "geometry/extrinsic_rows.h"

namespace velmorn {
namespace {

constexpr double kLeastNormalZ = 0.0001;
constexpr double kLeastAxisLength = 0.0001; // length unit

void printSteepPlane(double normalZ) {
  std::ostringstream text; // a stream of our own: the host's format flags must not reach the value
  text.imbue(std::locale::classic());
  text << "error:refPlaneExtrinsic.data[10] is " << normalZ << "\n";
  printConsole(text.str());
}

// An image coordinate to the length it stands for, along one side of the region.
float toRegion(float pixel, float first, float last, int pixels) {
  return pixel * ((last - first) / static_cast<float>(pixels)) + first;
}

// The aerial image's point on the plane, in camera coordinates: x and y by the region, z by the
// plane.
Vector3f pointOnPlane(const tagOzKPoint2Df32& pixel, const tagOzKCamExtrinsic& planeFromCam,
                      const tagOzKRect2Df32& region, int width, int height) {
  const float x = toRegion(pixel.x, region.x1, region.x2, width);
  const float y = toRegion(pixel.y, region.y1, region.y2, height);
  const Vector3d normal = rotationRow(planeFromCam, 2);
  const double z = -((static_cast<double>(x) * normal.x + static_cast<double>(y) * normal.y) +
                     planeFromCam.data[11]) /
                   normal.z;
  return {x, y, static_cast<float>(z)};
}

int calPlatform(const tagOzKPoint2Df32& p1, const tagOzKPoint2Df32& p2,
                tagOzKCamExtrinsic* platformFromCam, const tagOzKCamExtrinsic& planeFromCam,
                const tagOzKRect2Df32& region, int width, int height) {
  const double normalZ = planeFromCam.data[10];
  if (std::abs(normalZ) < kLeastNormalZ) {
    printSteepPlane(normalZ);
    return kOzkComputationFailed;
  }
  const Vector3f origin = pointOnPlane(p1, planeFromCam, region, width, height);
  const Vector3f along = pointOnPlane(p2, planeFromCam, region, width, height) - origin;
  const float length = std::sqrt(dot(along, along));
  if (static_cast<double>(length) < kLeastAxisLength) {
    printConsole("error:the length of xAxis is zero\n");
    return kOzkGeometryFailed2;
  }
  const Vector3f x = along / length;
  Vector3f n = narrowed(rotationRow(planeFromCam, 2));
  if (n.z < 0) n = -n;
  const Vector3f y = cross(n, x);
  if (platformFromCam == nullptr) return kOzkNullExtrinsic; // after the checks of the geometry

  *platformFromCam = extrinsicWithoutRows();
  const Vector3f rows[3] = {x, y, n};
  for (int r = 0; r < 3; ++r)
    setRow(*platformFromCam, r, widened(rows[r]), static_cast<double>(-dot(rows[r], origin)));
  return kOzkSuccess;
}

} // namespace
} // namespace velmorn

int ozkCalCamAndPlatformExtrinsic(tagOzKPoint2Df32 p1, tagOzKPoint2Df32 p2,
                                  tagOzKCamExtrinsic* platform, tagOzKCamExtrinsic refPlane,
                                  tagOzKRect2Df32 rect, int width, int height) {
  return velmorn::guarded(
      [&] { return velmorn::calPlatform(p1, p2, platform, refPlane, rect, width, height); });
}
