// The library's operations on one extrinsic, with its statuses as messages.
#include "velmorn/extrinsic_edits.h"

#include <cmath>
#include <sstream>
#include <string>

#include "velmorn/lens.h"
#include "velmorn/library_console.h"
#include "velmorn/pose.h"
#include "velmorn/tool_error.h"

namespace velmorn::tool {
namespace {

constexpr double kLeastSlope = 1e-6; // the library's own limit for a line that meets the plane
constexpr double kLeastSine = 1e-4;  // of the angle between a new x axis and the normal
constexpr int kTurn = 5;
constexpr int kTurnBack = 6;

tagOzKCamExtrinsic requireFinite(const tagOzKCamExtrinsic& extrinsic) {
  if (isFinitePose(poseFrom(extrinsic))) return extrinsic;
  throw ToolError("the result has a number that is not finite");
}

[[noreturn]] void failByStatus(int status) {
  throw ToolError("the library refused with status " + std::to_string(status));
}

tagOzKCamExtrinsic adjusted(tagOzKCamExtrinsic planeFromCam, float step, float degrees, int mode) {
  const LibraryConsole console;
  const int status = adjustExtrinsicOnAerialImg(&planeFromCam, step, degrees, mode);
  if (status != kOzkSuccess) failByStatus(status);
  return requireFinite(planeFromCam);
}

std::string pixelText(const tagOzKPoint2Df32& pixel) {
  std::ostringstream text;
  text << "pixel " << pixel.x << "," << pixel.y;
  return text.str();
}

// The pixel without lens distortion. For a line of sight that meets the plane nowhere, or behind
// the camera, the library would go on with a point that has no meaning.
tagOzKPoint2Df32 seenPixel(const tagOzKPoint2Df32& pixel, const CameraModel& camera,
                           const tagOzKCamExtrinsic& planeFromCam) {
  const cv::Point2d given(static_cast<double>(pixel.x), static_cast<double>(pixel.y));
  const cv::Point2d place = withoutDistortion(camera, {given})[0];
  const double* m = camera.intrinsic.matrix;
  const cv::Vec3d ray =
      cv::normalize(cv::Vec3d((place.x - m[2]) / m[0], (place.y - m[5]) / m[4], 1));
  const double* plane = planeFromCam.data + 8; // a, b, c, d
  const double slope = plane[0] * ray[0] + plane[1] * ray[1] + plane[2] * ray[2];
  const bool meets = std::abs(slope) >= kLeastSlope && -plane[3] / slope > 0;
  if (!meets) throw ToolError(pixelText(pixel) + " does not see the plane");
  return {static_cast<float>(place.x), static_cast<float>(place.y)};
}

} // namespace

tagOzKCamExtrinsic withNewXAxis(const tagOzKCamExtrinsic& planeFromCam, tagOzKPoint3Df32 axis) {
  tagOzKCamExtrinsic newPlaneFromCam{};
  const LibraryConsole console;
  const int status = changeExtrisicByNewXAxis(planeFromCam, axis, newPlaneFromCam);
  if (status == kOzkXAxisTooShort) throw ToolError("the new x axis is shorter than 0.0001");
  if (status == kOzkRotationNotInvertible) throw ToolError("the rotation cannot be inverted");
  if (status == kOzkXAxisAlongNormal) {
    throw ToolError("the new x axis is parallel to the plane's normal");
  }
  if (status != kOzkSuccess) failByStatus(status);
  return requireFinite(newPlaneFromCam);
}

tagOzKPoint3Df32 intoPlane(const tagOzKCamExtrinsic& planeFromCam, tagOzKPoint3Df32 direction) {
  const double* row = planeFromCam.data + 8;
  const cv::Vec3d normal = cv::normalize(cv::Vec3d(row[0], row[1], row[2]));
  const cv::Vec3d given(static_cast<double>(direction.x), static_cast<double>(direction.y),
                        static_cast<double>(direction.z));
  const cv::Vec3d within = cv::normalize(given - normal * normal.dot(given));
  if (cv::norm(given.cross(normal)) <= kLeastSine * cv::norm(given)) {
    throw ToolError("the new x axis is parallel to the plane's normal");
  }
  return {static_cast<float>(within[0]), static_cast<float>(within[1]),
          static_cast<float>(within[2])};
}

tagOzKCamExtrinsic nudged(const tagOzKCamExtrinsic& planeFromCam, float step, int mode) {
  return adjusted(planeFromCam, step, 0, mode);
}

tagOzKCamExtrinsic turned(const tagOzKCamExtrinsic& planeFromCam, float degrees, bool back) {
  return adjusted(planeFromCam, 0, degrees, back ? kTurnBack : kTurn);
}

tagOzKCamExtrinsic conveyorAlong(const tagOzKCamExtrinsic& planeFromCam, const ConveyorLine& line,
                                 const CameraModel& camera) {
  const tagOzKPoint2Df32 from = seenPixel(line.from, camera, planeFromCam);
  const tagOzKPoint2Df32 to = seenPixel(line.to, camera, planeFromCam);
  tagOzKCamExtrinsic conveyorFromCam{};
  const LibraryConsole console;
  const int status = calConveyorExtrinsicByImageLine(planeFromCam, from, to, camera.intrinsic,
                                                     line.direction, &conveyorFromCam);
  if (status == kOzkGeometryFailed3) {
    throw ToolError("both pixels see the same point of the plane");
  }
  if (status != kOzkSuccess) failByStatus(status);
  return requireFinite(conveyorFromCam);
}

} // namespace velmorn::tool
