// The cameras of a simulated rig over their scene.
#include "velmorn/simulate_rig.h"

#include <algorithm>
#include <cmath>

#include "velmorn/pose.h"
#include "velmorn/scene_parcels.h"
#include "velmorn/simulate_cameras.h"

namespace velmorn::tool {
namespace {

// The scenes' own measures go with cameras at this height.
constexpr double kSceneHeight = 1200; // millimetres

// Of the table, beyond the middle that holds the objects.
constexpr double kTableLength = 1500; // millimetres
constexpr double kTableWidth = 1100;  // millimetres

// Parts of the ground farther from a camera than so many heights do not count as seen.
constexpr double kFarthestView = 2;
constexpr double kLeastSteepness = 1e-6; // lines of sight along or away from the ground end there

// Where the lines of sight of the image's corners meet the ground, but no farther than counts.
std::vector<cv::Point2d> groundCorners(const SceneCamera& camera, double height) {
  const double right = camera.model.imageSize.width - 1;
  const double bottom = camera.model.imageSize.height - 1;
  const double farthest = kFarthestView * height;
  std::vector<cv::Point2d> corners;
  for (const SceneRay& ray : raysOf(camera, {{0, 0}, {right, 0}, {0, bottom}, {right, bottom}})) {
    cv::Vec3d way = ray.direction * (1 / cv::norm(ray.direction));
    const double steepness = std::max(-way[2], kLeastSteepness);
    way *= std::min(ray.origin[2] / steepness, farthest);
    corners.emplace_back(ray.origin[0] + way[0], ray.origin[1] + way[1]);
  }
  return corners;
}

cv::Rect2d seenGround(const std::vector<SceneCamera>& cameras, double height) {
  std::vector<cv::Point2d> corners;
  for (const SceneCamera& camera : cameras) {
    for (const cv::Point2d& corner : groundCorners(camera, height)) corners.push_back(corner);
  }
  cv::Point2d low = corners.front(), high = low;
  for (const cv::Point2d& corner : corners) {
    low = {std::min(low.x, corner.x), std::min(low.y, corner.y)};
    high = {std::max(high.x, corner.x), std::max(high.y, corner.y)};
  }
  return cv::Rect2d(low, high);
}

// As many rows of parcels as the seen part of the belt needs.
void layParcels(double from, double to, Scene& scene) {
  const auto rowAt = [](double x) {
    return static_cast<int>(std::floor(x / kParcelsLength + 0.5));
  };
  for (int row = rowAt(from); row <= rowAt(to); ++row) {
    for (SceneBox parcel : parcels()) {
      parcel.foot[0] += row * kParcelsLength;
      scene.boxes.push_back(parcel);
    }
  }
}

void buildConveyor(double from, double to, SimulatedRig& rig) {
  constexpr double kBeyond = 1000;
  rig.ground = emptyBelt(2 * (std::max(std::abs(from), std::abs(to)) + kBeyond));
  rig.scene = rig.ground;
  layParcels(from, to, rig.scene);
}

void buildPlatform(SimulatedRig& rig) {
  rig.ground = emptyTable(kTableLength, kTableWidth);
  rig.scene = rig.ground;
  for (const SceneBox& object : tableObjects()) rig.scene.boxes.push_back(object);
}

void buildScene(const SimulateJob& job, SimulatedRig& rig) {
  const double scale = job.height / kSceneHeight;
  if (job.kind == SimulatedKind::kConveyor) {
    buildConveyor(rig.seen.x / scale, (rig.seen.x + rig.seen.width) / scale, rig);
  } else {
    buildPlatform(rig);
  }
  rig.ground = scaled(rig.ground, scale);
  rig.scene = scaled(rig.scene, scale);
}

std::size_t defaultBase(const SimulateJob& job) {
  return job.kind == SimulatedKind::kConveyor ? (job.cameras.size() - 1) / 2 : 0;
}

} // namespace

cv::Matx44d SimulatedRig::baseFromCam(std::size_t camera) const {
  if (camera == base) return cv::Matx44d::eye();
  return inversePose(cameras[base].worldFromCam) * cameras[camera].worldFromCam;
}

SimulatedRig simulatedRig(const SimulateJob& job) {
  SimulatedRig rig;
  rig.cameras = simulatedCameras(job);
  rig.base = job.base.value_or(defaultBase(job));
  rig.seen = seenGround(rig.cameras, job.height);
  buildScene(job, rig);
  return rig;
}

} // namespace velmorn::tool
