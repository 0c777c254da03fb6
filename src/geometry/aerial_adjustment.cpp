// Moving and turning a plane frame on the aerial image.
#include "geometry/aerial_adjustment.h"

#include <cmath>

#include <opencv2/calib3d.hpp>
#include <opencv2/core.hpp>

#include "foundation/boundary.h"

namespace velmorn {
namespace {

// Hosts rely on the truncated value: extrinsics saved after a turn carry it.
constexpr double kTruncatedPi = 3.141592;

enum Mode {
  kAcrossStep = 1,
  kAcrossStepBack = 2,
  kAlongStep = 3,
  kAlongStepBack = 4,
  kTurn = 5,
  kTurnBack = 6
};

// A shift of the plane frame's coordinates, length unit.
struct Shift {
  float x, y;
};

// True when the camera's x axis runs more along the frame's x axis than the camera's y axis does.
bool xAlongCameraX(const tagOzKCamExtrinsic& planeFromCam) {
  return std::abs(planeFromCam.data[0]) > std::abs(planeFromCam.data[1]);
}

Shift shiftOfStep(const tagOzKCamExtrinsic& planeFromCam, float step) {
  if (xAlongCameraX(planeFromCam)) return {planeFromCam.data[0] > 0 ? step : -step, 0.0F};
  return {0.0F, planeFromCam.data[1] > 0 ? -step : step};
}

// The modes across swap the shift's components; hosts rely on the pairing as it stands.
Shift swapped(const Shift& shift) { return {shift.y, shift.x}; }

void add(tagOzKCamExtrinsic& planeFromCam, const Shift& shift) {
  planeFromCam.data[3] += static_cast<double>(shift.x);
  planeFromCam.data[7] += static_cast<double>(shift.y);
}

void subtract(tagOzKCamExtrinsic& planeFromCam, const Shift& shift) {
  planeFromCam.data[3] -= static_cast<double>(shift.x);
  planeFromCam.data[7] -= static_cast<double>(shift.y);
}

int adjust(tagOzKCamExtrinsic* planeFromCam, float step, float angle, int mode) {
  if (planeFromCam == nullptr) return kOzkNullExtrinsic;
  const Shift shift = shiftOfStep(*planeFromCam, step);
  const bool alongX = xAlongCameraX(*planeFromCam);
  const auto forth = alongX ? add : subtract, back = alongX ? subtract : add;
  switch (mode) {
    case kAcrossStep:
      forth(*planeFromCam, swapped(shift));
      break;
    case kAcrossStepBack:
      back(*planeFromCam, swapped(shift));
      break;
    case kAlongStep:
      add(*planeFromCam, shift);
      break;
    case kAlongStepBack:
      subtract(*planeFromCam, shift);
      break;
    case kTurn:
      rotateExtrinsicAboutPlaneNormal(planeFromCam, angle);
      break;
    case kTurnBack:
      rotateExtrinsicAboutPlaneNormal(planeFromCam, -angle);
      break;
    default:
      break;
  }
  return kOzkSuccess;
}

} // namespace

void rotateExtrinsicAboutPlaneNormal(tagOzKCamExtrinsic* planeFromCam, float angleDeg) {
  const float theta =
      static_cast<float>(static_cast<double>(angleDeg / 180.0F) * kTruncatedPi); // radians
  double* e = planeFromCam->data;
  const cv::Matx33d R(e[0], e[1], e[2], e[4], e[5], e[6], e[8], e[9], e[10]);
  const double angle = static_cast<double>(theta);
  const cv::Matx31d rotationVector(angle * e[8], angle * e[9], angle * e[10]);
  cv::Matx33d Q;
  cv::Rodrigues(rotationVector, Q);
  const cv::Matx33d turned = Q * R;
  for (int row = 0; row < 3; ++row)
    for (int column = 0; column < 3; ++column) e[4 * row + column] = turned(row, column);
}

} // namespace velmorn

int adjustExtrinsicOnAerialImg(tagOzKCamExtrinsic* ext, float step, float angle, int mode) {
  return velmorn::guarded([&] { return velmorn::adjust(ext, step, angle, mode); });
}
