// One stitching run of a rig before a data-code board.
#include "velmorn/data_code_run.h"

#include <algorithm>
#include <map>
#include <utility>

#include "velmorn/data_code_links.h"
#include "velmorn/library_console.h"
#include "velmorn/link_diagnosis.h"
#include "velmorn/tool_error.h"

namespace velmorn::tool {
namespace {

int callLibrary(const Rig& rig, OzKStitchResult& result) {
  std::vector<std::string> ids;
  ImagePathMap images;
  std::map<std::string, tagOzKCamIntrinsic> intrinsics;
  std::map<std::string, tagOzKCamDistortion> distortions;
  for (const RigCamera& camera : rig.cameras) {
    ids.push_back(camera.id);
    images[camera.id] = camera.images;
    intrinsics[camera.id] = camera.model.intrinsic;
    distortions[camera.id] = camera.model.distortion;
  }
  const LibraryConsole console;
  return ozkVelmornByDataCodeChess(ids, images, intrinsics, distortions, result,
                                   rig.saveCornerImages, rig.base, rig.minCorners);
}

[[noreturn]] void fail(const Rig& rig, const DataCodeShots& shots, int status) {
  const OutcomeMap outcomes = outcomesOf(shots);
  const std::vector<const RigCamera*> unlinked = camerasWithoutLink(rig, outcomes);
  if (status == kOzkUnlinkedCamera && !unlinked.empty()) {
    StitchedRig found = unlinkedRig(rig, outcomes, describeDataCodeShots(rig, shots));
    found.square = squareOf(shots);
    throw StitchFailure(unlinkedReason(rig, unlinked, outcomes), std::move(found));
  }
  throw ToolError("the library refused the run with status " + std::to_string(status));
}

std::optional<float> residualOf(const StitchedCamera& camera, const DataCodeShots& shots,
                                const PlaceMap& places) {
  const std::string& parent = camera.place.parent;
  const cv::Matx44d parentFromCam = places.at(parent).camFromBase * camera.place.baseFromCam;
  return linkResidual(shots.at(parent), shots.at(camera.id), parentFromCam);
}

} // namespace

StitchedRig stitchDataCodeRig(const Rig& rig,
                              const std::function<void(const ImageReport&)>& report) {
  const DataCodeShots shots = findDataCodeShots(rig, report);
  const OutcomeMap outcomes = outcomesOf(shots);
  OzKStitchResult result{};
  const int status = callLibrary(rig, result);
  if (status != kOzkSuccess) fail(rig, shots, status);
  const PlaceMap places = findDataCodePlaces(rig, result, outcomes);

  StitchedRig stitched;
  stitched.square = squareOf(shots);
  stitched.shots = describeDataCodeShots(rig, shots);
  stitched.base = static_cast<std::size_t>(result.baseCamIdx);
  for (std::size_t i = 0; i < rig.cameras.size(); ++i) {
    StitchedCamera camera = startCamera(rig.cameras[i].id, places, outcomes);
    camera.libraryEntry = result.camExtrinsic[i];
    camera.residual = i == stitched.base ? 0.0F : residualOf(camera, shots, places);
    requireFinite(camera);
    stitched.cameras.push_back(camera);
  }
  return stitched;
}

} // namespace velmorn::tool
