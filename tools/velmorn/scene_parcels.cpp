// Things to look at: a belt with parcels, a table with objects. Millimetres.
#include "velmorn/scene_parcels.h"

namespace velmorn::tool {
namespace {

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
const cv::Vec3d kWood(120, 160, 185);

constexpr double kBeltWidth = 1000;
constexpr double kRailWidth = 40;
constexpr double kRailHeight = 60;
constexpr double kFloorBelow = 700;
constexpr double kTapeWidth = 45;

SceneBox rail(double length, double y) {
  return {{0, y, 0}, {length, kRailWidth, kRailHeight}, 0, {40, 170, 230}, 0, {}};
}

SceneBox floorOf(double side) {
  constexpr double kThickness = 10;
  return {{0, 0, -kFloorBelow - kThickness}, {side, side, kThickness}, 0, {70, 75, 75}, 0, {}};
}

SceneBox plain(double x, double y, const cv::Vec3d& size, double degrees, const cv::Vec3d& color) {
  return {{x, y, 0}, size, degrees, color, 0, {}};
}

SceneBox taped(double x, double y, const cv::Vec3d& size, double degrees) {
  return {{x, y, 0}, size, degrees, kCardboard, kTapeWidth, kTape};
}

SceneLight lampBeside() { return {{-0.35, 0.45, 1}, 0.45}; }

} // namespace

Scene emptyBelt(double length) {
  constexpr double kFloorBeyond = 1000; // beyond both ends of the belt
  constexpr double kRailY = (kBeltWidth + kRailWidth) / 2;
  Scene scene;
  scene.belt.length = length;
  scene.belt.width = kBeltWidth;
  scene.belt.seamSpacing = 300;
  scene.belt.seamWidth = 8;
  scene.light = lampBeside();
  scene.boxes = {floorOf(length + 2 * kFloorBeyond), rail(length, kRailY), rail(length, -kRailY)};
  return scene;
}

std::vector<SceneBox> parcels() {
  return {
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
}

Scene emptyTable(double length, double width) {
  constexpr double kFloorSide = 12000;
  Scene scene;
  scene.belt.length = length;
  scene.belt.width = width;
  scene.belt.color = kWood;
  scene.light = lampBeside();
  scene.boxes = {floorOf(kFloorSide)};
  return scene;
}

std::vector<SceneBox> tableObjects() {
  return {
      taped(-60, 40, {260, 180, 140}, 25),         plain(210, 150, {120, 120, 220}, 40, kBlue),
      plain(-300, -160, {180, 90, 60}, -20, kRed), plain(120, -190, {150, 110, 90}, 10, kGreen),
      plain(330, -90, {90, 90, 40}, 0, kYellow),   plain(-280, 220, {140, 140, 110}, 60, kPurple),
      plain(30, 280, {200, 60, 30}, -8, kWhite),
  };
}

Scene scaled(Scene scene, double factor) {
  scene.belt.length *= factor;
  scene.belt.width *= factor;
  scene.belt.seamSpacing *= factor;
  scene.belt.seamWidth *= factor;
  for (SceneBox& box : scene.boxes) {
    box.foot *= factor;
    box.size *= factor;
    box.tapeWidth *= factor;
  }
  return scene;
}

} // namespace velmorn::tool
