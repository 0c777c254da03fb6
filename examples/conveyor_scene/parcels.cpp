// The example's scene: parcels on a conveyor belt under two depth cameras. Lengths in millimetres.
#include "parcels.h"

namespace {

using velmorn::tool::CameraModel;
using velmorn::tool::Scene;
using velmorn::tool::SceneBox;

// Colours: blue, green, red.
const cv::Vec3d kCardboard(105, 150, 190);
const cv::Vec3d kTape(150, 200, 225);
const cv::Vec3d kWhite(225, 225, 225);
const cv::Vec3d kRed(50, 50, 200);
const cv::Vec3d kGreen(80, 150, 60);
const cv::Vec3d kBlue(180, 110, 40);
const cv::Vec3d kYellow(40, 190, 225);
const cv::Vec3d kPurple(150, 70, 130);
const cv::Vec3d kOrange(30, 120, 230);
const cv::Vec3d kTeal(150, 150, 40);

constexpr double kBeltLength = 6000;
constexpr double kBeltWidth = 1000;
constexpr double kRailWidth = 40;
constexpr double kRailHeight = 60;
constexpr double kFloorBelowBelt = 700;
constexpr double kTapeWidth = 45;

constexpr double kCameraHeight = 1500;
constexpr double kCameraDistance = 700;
constexpr double kTiltDegrees = -5;
constexpr double kFocal = 1000; // pixels

SceneBox rail(double y) {
  return {{0, y, 0}, {kBeltLength, kRailWidth, kRailHeight}, 0, {40, 170, 230}, 0, {}};
}

SceneBox floorUnderBelt() {
  constexpr double kThickness = 10, kSide = 8000;
  return {
      {0, 0, -kFloorBelowBelt - kThickness}, {kSide, kSide, kThickness}, 0, {70, 75, 75}, 0, {}};
}

SceneBox plain(double x, double y, const cv::Vec3d& size, double degrees, const cv::Vec3d& color) {
  return {{x, y, 0}, size, degrees, color, 0, {}};
}

SceneBox taped(double x, double y, const cv::Vec3d& size, double degrees) {
  return {{x, y, 0}, size, degrees, kCardboard, kTapeWidth, kTape};
}

CameraModel cameraModel(double centreX, double centreY) {
  CameraModel model;
  model.intrinsic = {{kFocal, 0, centreX, 0, kFocal, centreY, 0, 0, 1}};
  model.imageSize = {1280, 960};
  return model;
}

} // namespace

Scene parcelsOnBelt() {
  Scene scene;
  scene.belt.length = kBeltLength;
  scene.belt.width = kBeltWidth;
  scene.belt.seamSpacing = 300;
  scene.belt.seamWidth = 8;
  scene.light = {{-0.35, 0.45, 1}, 0.45};
  const double railY = (kBeltWidth + kRailWidth) / 2;
  scene.boxes = {
      floorUnderBelt(),
      rail(railY),
      rail(-railY),
      taped(-1050, -230, {260, 180, 150}, 20),
      plain(-1020, 220, {200, 200, 90}, -15, kBlue),
      taped(-720, -40, {340, 220, 260}, 65),
      plain(-640, 340, {180, 120, 60}, 0, kRed),
      plain(-420, -330, {220, 160, 200}, -35, kGreen),
      taped(-260, 130, {300, 200, 120}, 10),
      plain(-20, -160, {240, 240, 320}, 45, kYellow),
      plain(80, 320, {260, 140, 40}, -20, kWhite),
      plain(300, -350, {160, 120, 100}, 80, kPurple),
      taped(340, 60, {320, 240, 180}, -30),
      plain(600, 330, {200, 160, 240}, 25, kOrange),
      plain(640, -200, {280, 180, 70}, 5, kTeal),
      taped(900, 60, {220, 200, 140}, -50),
      plain(930, -340, {140, 140, 30}, 15, kWhite),
  };
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
