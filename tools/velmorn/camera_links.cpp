// Where the cameras are relative to the base, composed from the pairwise links.
#include "velmorn/camera_links.h"

#include <memory>

#include "velmorn/library_console.h"
#include "velmorn/pose.h"

namespace velmorn::tool {
namespace {

void placeBelow(const CamRalationTree& node, const CameraPlace& place, PlaceMap& places) {
  for (const auto& child : node.children) {
    const cv::Matx44d childFromNode = poseFrom(child->R, child->T);
    CameraPlace childPlace;
    childPlace.baseFromCam = place.baseFromCam * inversePose(childFromNode);
    childPlace.camFromBase = childFromNode * place.camFromBase;
    childPlace.parent = node.camID;
    childPlace.depth = place.depth + 1;
    places[child->camID] = childPlace;
    placeBelow(*child, childPlace, places);
  }
}

const std::string& baseId(const Rig& rig, const OzKStitchResult& result) {
  return rig.cameras[static_cast<std::size_t>(result.baseCamIdx)].id;
}

// True when no link can have been anything but direct: every image is accounted for, nothing was
// said about a failed pose, and every camera shares enough positions with the base.
bool allDirect(const Rig& rig, const OzKStitchResult& result, const StitchMessages& messages) {
  const std::string success = "baseCamIdx=" + std::to_string(result.baseCamIdx);
  if (!messages.complete() || messages.rest() != success) return false;
  const OutcomeMap& outcomes = messages.outcomes();
  for (const RigCamera& camera : rig.cameras) {
    if (sharedViews(outcomes.at(camera.id), outcomes.at(baseId(rig, result))) < rig.minImages) {
      return false;
    }
  }
  return true;
}

PlaceMap directPlaces(const Rig& rig, const OzKStitchResult& result) {
  const std::string& base = baseId(rig, result);
  PlaceMap places;
  for (std::size_t i = 0; i < rig.cameras.size(); ++i) {
    CameraPlace& place = places[rig.cameras[i].id];
    if (rig.cameras[i].id == base) continue;
    const cv::Matx44d camFromBase = poseFrom(result.camExtrinsic[i]);
    place = {inversePose(camFromBase), camFromBase, base, 1};
  }
  return places;
}

std::shared_ptr<CamRalationTree> treeAgain(const Rig& rig, const OzKStitchResult& result,
                                           const CornerMap& corners) {
  const LibraryConsole console;
  MatrixMap intrinsics;
  MatrixMap distortions;
  std::vector<std::string> candidates;
  for (const RigCamera& camera : rig.cameras) {
    intrinsics[camera.id] = cv::Mat(cv::Matx33d(camera.model.intrinsic.matrix));
    distortions[camera.id] = cv::Mat(cv::Matx<double, 1, 12>(camera.model.distortion.coeffs));
    if (camera.id != baseId(rig, result)) candidates.push_back(camera.id);
  }
  const auto base = std::make_shared<CamRalationTree>();
  base->camID = baseId(rig, result);
  int height = 0;
  buildCamRalationTree(base, candidates, corners, intrinsics, distortions, rig.board, rig.square,
                       rig.minImages, height);
  return base;
}

} // namespace

PlaceMap composeLinks(const CamRalationTree& base) {
  PlaceMap places;
  places[base.camID] = CameraPlace();
  placeBelow(base, places[base.camID], places);
  return places;
}

int sharedViews(const std::vector<ImageOutcome>& a, const std::vector<ImageOutcome>& b) {
  int shared = 0;
  for (std::size_t j = 0; j < a.size() && j < b.size(); ++j) {
    if (a[j] == ImageOutcome::kBoardFound && b[j] == ImageOutcome::kBoardFound) ++shared;
  }
  return shared;
}

PlaceMap findPlaces(const Rig& rig, const OzKStitchResult& result, const StitchMessages& messages,
                    const CornerMap& corners) {
  if (allDirect(rig, result, messages)) return directPlaces(rig, result);
  return composeLinks(*treeAgain(rig, result, corners));
}

} // namespace velmorn::tool
