// The images of a rig that looks at a data-code board.
#include "velmorn/data_code_shots.h"

#include <opencv2/calib3d.hpp>

#include "velmorn/data_code_view.h"
#include "velmorn/grey_image.h"
#include "velmorn/pose.h"
#include "velmorn/tool_error.h"

namespace velmorn::tool {
namespace {

std::optional<cv::Matx44d> solvePose(const DataCodeView& view, const CameraModel& camera) {
  const cv::Matx33d matrix(camera.intrinsic.matrix);
  const cv::Matx<double, 1, 12> distortion(camera.distortion.coeffs);
  cv::Mat rotationVector, rotation, t;
  try {
    if (!cv::solvePnP(view.onBoard, view.pixels, matrix, distortion, rotationVector, t)) return {};
  } catch (const cv::Exception&) { // all corners on a line
    return {};
  }
  cv::Rodrigues(rotationVector, rotation);
  const cv::Matx44d camFromBoard = poseFrom(rotation, t);
  if (!isFinitePose(camFromBoard)) return {};
  return camFromBoard;
}

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
  const std::optional<cv::Matx44d> camFromBoard = solvePose(view, camera);
  if (!camFromBoard) return corners + " found, but no pose computed from them";
  shot = {ImageOutcome::kBoardFound, view.onBoard, *camFromBoard};
  return "board found, " + corners;
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
      const std::string detail = look(path, camera.model, rig.minCorners, shot);
      report({++number, total, camera.id, path, shot.outcome, detail});
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

} // namespace velmorn::tool
