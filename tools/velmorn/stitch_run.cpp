// One stitching run of a rig.
#include "velmorn/stitch_run.h"

#include <algorithm>
#include <cmath>
#include <iostream>
#include <map>
#include <utility>

#include "velmorn/data_code_run.h"
#include "velmorn/link_diagnosis.h"
#include "velmorn/plain_shots.h"
#include "velmorn/pose.h"
#include "velmorn/stream_redirection.h"
#include "velmorn/tool_error.h"

namespace velmorn::tool {
namespace {

ImagePathMap imagesOf(const Rig& rig) {
  ImagePathMap images;
  for (const RigCamera& camera : rig.cameras) images[camera.id] = camera.images;
  return images;
}

// Calls the library with its console sent to `messages`. Returns its status.
int callLibrary(const Rig& rig, StitchMessages& messages, OzKStitchResult& result) {
  std::vector<std::string> ids;
  std::map<std::string, tagOzKCamIntrinsic> intrinsics;
  std::map<std::string, tagOzKCamDistortion> distortions;
  for (const RigCamera& camera : rig.cameras) {
    ids.push_back(camera.id);
    intrinsics[camera.id] = camera.model.intrinsic;
    distortions[camera.id] = camera.model.distortion;
  }
  const StreamRedirection console(std::cout, messages);
  return ozkVelmornByChess(ids, imagesOf(rig), intrinsics, distortions, rig.board, rig.square,
                           result, rig.minImages, rig.saveCornerImages, rig.base);
}

CameraPlace placeOf(const PlaceMap& places, const std::string& id) {
  const auto found = places.find(id);
  if (found == places.end()) {
    throw ToolError("camera " + inQuotes(id) +
                    " was not linked when the links were computed again; "
                    "did its images change during the run?");
  }
  return found->second;
}

StitchedCamera countImages(const std::string& id, const std::vector<ImageOutcome>& outcomes) {
  StitchedCamera camera;
  camera.id = id;
  camera.imagesFound = static_cast<std::size_t>(
      std::count(outcomes.begin(), outcomes.end(), ImageOutcome::kBoardFound));
  camera.imagesTotal = outcomes.size();
  return camera;
}

[[noreturn]] void fail(const Rig& rig, const StitchMessages& messages, int status) {
  const std::string reason = failureReason(rig, messages, status);
  if (unlinkedCameras(rig, messages).empty()) throw ToolError(reason);
  const CornerMap corners = cornersAgain(rig, messages);
  throw StitchFailure(reason, unlinkedRig(rig, messages.outcomes(),
                                          describePlainShots(rig, messages.outcomes(), corners)));
}

} // namespace

StitchFailure::StitchFailure(const std::string& reason, StitchedRig found)
    : ToolError(reason), found_(std::make_shared<const StitchedRig>(std::move(found))) {}

StitchedRig unlinkedRig(const Rig& rig, const OutcomeMap& outcomes, ShotMap shots) {
  StitchedRig stitched;
  for (const RigCamera& camera : rig.cameras) {
    stitched.cameras.push_back(countImages(camera.id, outcomes.at(camera.id)));
    stitched.cameras.back().isLinked = false;
  }
  stitched.shots = std::move(shots);
  stitched.square = rig.square;
  if (rig.base != kAutoBase) stitched.base = static_cast<std::size_t>(rig.base);
  return stitched;
}

StitchedCamera startCamera(const std::string& id, const PlaceMap& places,
                           const OutcomeMap& outcomes) {
  const std::vector<ImageOutcome>& own = outcomes.at(id);
  StitchedCamera camera = countImages(id, own);
  camera.place = placeOf(places, id);
  const auto parent = outcomes.find(camera.place.parent);
  if (parent != outcomes.end())
    camera.imagesShared = static_cast<std::size_t>(sharedViews(own, parent->second));
  return camera;
}

void requireFinite(const StitchedCamera& camera) {
  const double* entry = camera.libraryEntry.data;
  const bool finite = isFinitePose(camera.place.baseFromCam) &&
                      std::isfinite(camera.residual.value_or(0)) &&
                      std::all_of(entry, entry + 16, [](double v) { return std::isfinite(v); });
  if (!finite) {
    throw ToolError("camera " + inQuotes(camera.id) +
                    " came out with a number that is not finite; "
                    "check its intrinsics and images");
  }
}

StitchedRig stitchRig(const Rig& rig, const std::function<void(const ImageReport&)>& report) {
  if (rig.hasDataCodes) return stitchDataCodeRig(rig, report);
  StitchMessages messages(imagesOf(rig), report);
  OzKStitchResult result{};
  const int status = callLibrary(rig, messages, result);
  if (status != kOzkSuccess) fail(rig, messages, status);
  const CornerMap corners = cornersAgain(rig, messages);
  const PlaceMap places = findPlaces(rig, result, messages, corners);

  StitchedRig stitched;
  stitched.square = rig.square;
  stitched.shots = describePlainShots(rig, messages.outcomes(), corners);
  stitched.base = static_cast<std::size_t>(result.baseCamIdx);
  for (std::size_t i = 0; i < rig.cameras.size(); ++i) {
    StitchedCamera camera = startCamera(rig.cameras[i].id, places, messages.outcomes());
    camera.residual = result.camRTError[i];
    camera.libraryEntry = result.camExtrinsic[i];
    requireFinite(camera);
    stitched.cameras.push_back(camera);
  }
  return stitched;
}

} // namespace velmorn::tool
