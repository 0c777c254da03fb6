// The images of a rig that looks at a data-code board.
#include "velmorn/data_code_shots.h"

#include <algorithm>
#include <cmath>

#include "datacode/code_content.h"
#include "velmorn/data_code_view.h"
#include "velmorn/grey_image.h"
#include "velmorn/plain_shots.h"
#include "velmorn/shot_pose.h"
#include "velmorn/tool_error.h"

namespace velmorn::tool {
namespace {

float squareOf(const DataCodeView& view) { return parseCodeContent(view.code.c_str()).squareSize; }

// Fills the shot; returns what there is to say about the image.
std::string look(const std::string& path, const CameraModel& camera, int minCorners,
                 DataCodeShot& shot) {
  const cv::Mat grey = readGrey(path);
  shot.outcome = grey.empty() ? ImageOutcome::kNotLoaded : ImageOutcome::kNoBoard;
  if (grey.empty()) return "";
  const DataCodeView view = findDataCodeBoard(grey);
  if (!view.problem.empty()) return view.problem;
  const std::string corners = counted(view.pixels.size(), "corner");
  if (view.pixels.size() < static_cast<std::size_t>(minCorners))
    return corners + " found, fewer than " + std::to_string(minCorners);
  const std::optional<ShotPose> pose = solveShotPose(view.onBoard, view.pixels, camera);
  if (!pose) return corners + " found, but no pose computed from them";
  shot = {ImageOutcome::kBoardFound,
          view.onBoard,
          pose->camFromBoard,
          view.pixels,
          squareOf(view),
          pose->reprojectionError,
          ""};
  return "board found, " + corners;
}

cv::Point gridPlace(const cv::Point3f& corner, float square) {
  const auto line = [&](float length) {
    return static_cast<int>(
        std::lround(std::clamp(static_cast<double>(length / square), -1e6, 1e6)));
  };
  return {line(corner.x), line(corner.y)};
}

ShotRecord describe(const std::string& image, const DataCodeShot& shot) {
  ShotRecord record;
  record.image = image;
  record.outcome = outcomeWord(shot.outcome);
  record.detail = shot.detail;
  if (shot.outcome != ImageOutcome::kBoardFound) return record;
  record.reprojectionError = shot.reprojectionError;
  record.camFromBoard = shot.camFromBoard;
  record.corners.assign(shot.pixels.begin(), shot.pixels.end());
  for (const cv::Point3f& corner : shot.corners)
    record.grid.push_back(gridPlace(corner, shot.square));
  return record;
}

} // namespace

DataCodeShots findDataCodeShots(const Rig& rig,
                                const std::function<void(const ImageReport&)>& report) {
  DataCodeShots shots;
  std::size_t number = 0, total = 0;
  for (const RigCamera& camera : rig.cameras) total += camera.images.size();
  for (const RigCamera& camera : rig.cameras)
    for (const std::string& path : camera.images) {
      DataCodeShot shot;
      shot.detail = look(path, camera.model, rig.minCorners, shot);
      report({++number, total, camera.id, path, shot.outcome, shot.detail});
      shots[camera.id].push_back(shot);
    }
  return shots;
}

OutcomeMap outcomesOf(const DataCodeShots& shots) {
  OutcomeMap outcomes;
  for (const auto& [camera, list] : shots)
    for (const DataCodeShot& shot : list) outcomes[camera].push_back(shot.outcome);
  return outcomes;
}

ShotMap describeDataCodeShots(const Rig& rig, const DataCodeShots& shots) {
  ShotMap described;
  for (const RigCamera& camera : rig.cameras) {
    CameraShots& own = described[camera.id];
    own.imageSize = firstImageSize(camera);
    for (std::size_t j = 0; j < camera.images.size(); ++j)
      own.shots.push_back(describe(camera.images[j], shots.at(camera.id)[j]));
  }
  return described;
}

float squareOf(const DataCodeShots& shots) {
  for (const auto& [camera, list] : shots)
    for (const DataCodeShot& shot : list)
      if (shot.outcome == ImageOutcome::kBoardFound) return shot.square;
  return 0;
}

} // namespace velmorn::tool
