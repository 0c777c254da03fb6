// Where the cameras are relative to the base, composed from the pairwise links.
#include "velmorn/camera_links.h"

#include <iostream>
#include <memory>

#include "stitching/chess_corners.h"
#include "velmorn/pose.h"
#include "velmorn/stream_redirection.h"

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

// Finds the corners again, in the images where the run found them.
CornerMap cornersAgain(const Rig& rig, const StitchMessages& messages) {
  ImagePathMap found;
  std::map<std::string, std::vector<std::size_t>> indices; // of `found` in the camera's list
  for (const RigCamera& camera : rig.cameras) {
    const std::vector<ImageOutcome>& outcomes = messages.outcomes().at(camera.id);
    found[camera.id];
    for (std::size_t j = 0; j < camera.images.size(); ++j) {
      if (messages.complete() && outcomes[j] != ImageOutcome::kBoardFound) continue;
      found[camera.id].push_back(camera.images[j]);
      indices[camera.id].push_back(j);
    }
  }
  CornerMap foundCorners;
  findChessCornerPtByImgs(found, foundCorners, rig.board, false);

  CornerMap corners;
  for (const RigCamera& camera : rig.cameras) {
    corners[camera.id].resize(camera.images.size());
    for (std::size_t k = 0; k < indices[camera.id].size(); ++k) {
      corners[camera.id][indices[camera.id][k]] = foundCorners[camera.id][k];
    }
  }
  return corners;
}

std::shared_ptr<CamRalationTree> treeAgain(const Rig& rig, const OzKStitchResult& result,
                                           const StitchMessages& messages) {
  StitchMessages unheard({}, nullptr);
  const StreamRedirection console(std::cout, unheard);
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
  buildCamRalationTree(base, candidates, cornersAgain(rig, messages), intrinsics, distortions,
                       rig.board, rig.square, rig.minImages, height);
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

PlaceMap findPlaces(const Rig& rig, const OzKStitchResult& result, const StitchMessages& messages) {
  if (allDirect(rig, result, messages)) return directPlaces(rig, result);
  return composeLinks(*treeAgain(rig, result, messages));
}

} // namespace velmorn::tool
