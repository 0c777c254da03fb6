// How the cameras before a data-code board are linked, and how well the links agree with the images
// that they were not computed from.
#include "velmorn/data_code_links.h"

#include <algorithm>
#include <memory>

#include "datacode/data_code_tree.h"
#include "velmorn/pose.h"
#include "velmorn/tool_error.h"

namespace velmorn::tool {
namespace {

// The tree depends only on which images have a pose, so any pose will do for it.
PoseMap posesToGrowBy(const OutcomeMap& outcomes) {
  PoseMap poses;
  for (const auto& [camera, list] : outcomes)
    for (const ImageOutcome outcome : list)
      poses[camera].push_back(outcome == ImageOutcome::kBoardFound ? cv::Mat::eye(4, 4, CV_64FC1)
                                                                   : cv::Mat());
  return poses;
}

PlaceMap largestTree(const Rig& rig, const OutcomeMap& outcomes) {
  PlaceMap largest;
  for (const RigCamera& camera : rig.cameras) {
    const PlaceMap places = growDataCodeTree(rig, outcomes, camera.id);
    if (places.size() > largest.size()) largest = places;
  }
  return largest;
}

} // namespace

PlaceMap growDataCodeTree(const Rig& rig, const OutcomeMap& outcomes, const std::string& base) {
  PoseMap poses = posesToGrowBy(outcomes);
  std::vector<std::string> others;
  for (const RigCamera& camera : rig.cameras)
    if (camera.id != base) others.push_back(camera.id);
  const auto root = std::make_shared<CamRalationTree>();
  root->camID = base;
  int height = 0;
  buildDataCodeCamTree(root, others, poses, &height);
  return composeLinks(*root);
}

PlaceMap findDataCodePlaces(const Rig& rig, const OzKStitchResult& result,
                            const OutcomeMap& outcomes) {
  const std::string& base = rig.cameras[static_cast<std::size_t>(result.baseCamIdx)].id;
  PlaceMap places = growDataCodeTree(rig, outcomes, base);
  for (std::size_t i = 0; i < rig.cameras.size(); ++i) {
    const auto place = places.find(rig.cameras[i].id);
    if (place == places.end())
      throw ToolError("camera " + inQuotes(rig.cameras[i].id) +
                      " was linked by other images than those with the board; "
                      "did its images change during the run?");
    if (rig.cameras[i].id == base) continue;
    place->second.baseFromCam = poseFrom(result.camExtrinsic[i]);
    place->second.camFromBase = inversePose(place->second.baseFromCam);
  }
  return places;
}

std::vector<const RigCamera*> camerasWithoutLink(const Rig& rig, const OutcomeMap& outcomes) {
  const PlaceMap linked =
      rig.base == kAutoBase
          ? largestTree(rig, outcomes)
          : growDataCodeTree(rig, outcomes, rig.cameras[static_cast<std::size_t>(rig.base)].id);
  std::vector<const RigCamera*> unlinked;
  for (const RigCamera& camera : rig.cameras)
    if (linked.count(camera.id) == 0) unlinked.push_back(&camera);
  return unlinked;
}

std::optional<float> linkResidual(const std::vector<DataCodeShot>& parent,
                                  const std::vector<DataCodeShot>& cam,
                                  const cv::Matx44d& parentFromCam) {
  bool isFirst = true;
  double sum = 0;
  std::size_t count = 0;
  for (std::size_t k = 0; k < std::min(parent.size(), cam.size()); ++k) {
    const bool isCommon = parent[k].outcome == ImageOutcome::kBoardFound &&
                          cam[k].outcome == ImageOutcome::kBoardFound;
    if (!isCommon || std::exchange(isFirst, false)) continue;
    const cv::Matx44d byCam = parentFromCam * cam[k].camFromBoard;
    for (const auto* corners : {&parent[k].corners, &cam[k].corners})
      for (const cv::Point3d corner : *corners) {
        sum += cv::norm(transformed(parent[k].camFromBoard, corner) - transformed(byCam, corner));
        ++count;
      }
  }
  if (count == 0) return std::nullopt;
  return static_cast<float>(sum / static_cast<double>(count));
}

} // namespace velmorn::tool
