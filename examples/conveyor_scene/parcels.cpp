// The example's scene: parcels on a conveyor belt under two depth cameras. Lengths in millimetres.
#include "parcels.h"

#include "velmorn/scene_parcels.h"

namespace {

using velmorn::tool::CameraModel;
using velmorn::tool::Scene;
using velmorn::tool::SceneBox;

constexpr double kBeltLength = 6000;
constexpr double kCameraHeight = 1500;
constexpr double kCameraDistance = 700;
constexpr double kTiltDegrees = -5;
constexpr double kFocal = 1000; // pixels

CameraModel cameraModel(double centreX, double centreY) {
  CameraModel model;
  model.intrinsic = {{kFocal, 0, centreX, 0, kFocal, centreY, 0, 0, 1}};
  model.imageSize = {1280, 960};
  return model;
}

} // namespace

Scene parcelsOnBelt() {
  Scene scene = velmorn::tool::emptyBelt(kBeltLength);
  for (const SceneBox& parcel : velmorn::tool::parcels()) scene.boxes.push_back(parcel);
  return scene;
}

std::vector<NamedCamera> camerasOverBelt() {
  using velmorn::tool::lookingDown;
  constexpr double kHalf = kCameraDistance / 2;
  return {
      {"cam1", {cameraModel(641.5, 478), lookingDown({-kHalf, 0, kCameraHeight})}},
      {"cam2", {cameraModel(637, 482.5), lookingDown({kHalf, 0, kCameraHeight}, kTiltDegrees)}},
  };
}
