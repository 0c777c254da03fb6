// What a run would record of a synthetic rig, and ways to spoil it.
#include "tools/record_builder.h"

#include <algorithm>

#include "velmorn/shot_geometry.h"
#include "velmorn/shot_pose.h"

namespace velmorn::tool {
namespace {

std::vector<cv::Point3f> boardPlaces(const StitchRecord& run) {
  return placesOnBoard(run, ShotRecord());
}

CameraModel modelOf(const SyntheticRig& rig, std::size_t camera) {
  CameraModel model;
  model.intrinsic = rig.intrinsicRecords().at(rig.ids[camera]);
  model.distortion = rig.distortionRecords().at(rig.ids[camera]);
  model.imageSize = rig.cameras[camera].imageSize;
  return model;
}

ShotRecord shotOf(const StitchRecord& run, const std::vector<cv::Point2f>& corners,
                  const CameraModel& model, const std::string& image) {
  ShotRecord shot;
  shot.image = image;
  shot.outcome = "no-board";
  if (corners.empty()) return shot;
  const auto pose = solveShotPose(boardPlaces(run), corners, model).value();
  shot.outcome = "found";
  shot.reprojectionError = pose.reprojectionError;
  shot.camFromBoard = pose.camFromBoard;
  shot.corners.assign(corners.begin(), corners.end());
  return shot;
}

CameraRecord cameraOf(const SyntheticRig& rig, const CornerMap& corners, const StitchRecord& run,
                      std::size_t index) {
  CameraRecord camera;
  camera.id = rig.ids[index];
  camera.intrinsics = IntrinsicsRecord{camera.id + ".yml", modelOf(rig, index)};
  camera.imageSize = camera.intrinsics->model.imageSize;
  for (std::size_t j = 0; j < rig.shots.size(); ++j)
    camera.shots.push_back(shotOf(run, corners.at(camera.id)[j], camera.intrinsics->model,
                                  camera.id + "-" + std::to_string(j) + ".png"));
  camera.imagesTotal = camera.shots.size();
  camera.imagesFound =
      static_cast<std::size_t>(std::count_if(camera.shots.begin(), camera.shots.end(),
                                             [](const ShotRecord& shot) { return shot.found(); }));
  return camera;
}

} // namespace

CornerMap recordCorners(const SyntheticRig& rig) { return rig.cornerMap(kRecordNoise); }

void moveFrom(const SyntheticRig& rig, std::size_t camera, std::size_t shot,
              const cv::Matx44d& movedFromCam, CornerMap& corners) {
  SyntheticRig moved = rig;
  moved.camFromWorld[camera] = movedFromCam * rig.camFromWorld[camera];
  const auto after = moved.cornerMap(kRecordNoise, 2).at(rig.ids[camera]);
  auto& own = corners.at(rig.ids[camera]);
  for (std::size_t j = shot; j < own.size(); ++j) own[j] = after[j];
}

void turnBoards(const SyntheticRig& rig, std::size_t camera, CornerMap& corners) {
  for (auto& list : corners.at(rig.ids[camera])) std::reverse(list.begin(), list.end());
}

StitchRecord recordOf(const SyntheticRig& rig, const CornerMap& corners, bool inChain) {
  StitchRecord run;
  run.board = {rig.board.width, rig.board.height};
  run.square = static_cast<double>(rig.board.square);
  run.minImages = 3;
  run.base = rig.ids.front();
  for (std::size_t i = 0; i < rig.ids.size(); ++i)
    run.cameras.push_back(cameraOf(rig, corners, run, i));
  run.cameras.front().isBase = true;
  run.cameras.front().residual = 0.0;
  for (std::size_t i = 0; i < rig.ids.size(); ++i) {
    CameraRecord& camera = run.cameras[i];
    camera.baseFromCam = rig.camFromCam(0, static_cast<int>(i));
    if (i == 0) continue;
    const CameraRecord& parent = run.cameras[inChain ? i - 1 : 0];
    camera.parent = parent.id;
    camera.depth = parent.depth + 1;
    camera.imagesShared = sharedPositions(camera, parent).size();
    camera.residual = 0.1;
  }
  return run;
}

} // namespace velmorn::tool
