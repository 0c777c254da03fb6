// Running the driver and the exported function on one set of inputs.
#include "stitching/stitch_run.h"

#include <algorithm>
#include <cstring>
#include <sstream>

#include "stitching/chess_stitching.h"
#include "support/temp_dir.h"

namespace velmorn {
namespace {

cv::Mat asMatrix(int rows, int columns, const double* elements) {
  cv::Mat matrix(rows, columns, CV_64FC1);
  std::copy(elements, elements + rows * columns, matrix.ptr<double>());
  return matrix;
}

} // namespace

StitchInputs inputsWithoutImages(int cameraCount) {
  const CameraModel camera = plainCamera({640, 480}, 500);
  StitchInputs inputs;
  for (int i = 0; i < cameraCount; ++i) {
    const std::string id = "cam" + std::to_string(i);
    inputs.camIDs.push_back(id);
    inputs.paths[id] = {"missing-0.png", "missing-1.png", "missing-2.png"};
    inputs.intrinsics[id] = camera.intrinsicRecord();
    inputs.distortions[id] = camera.distortionRecord();
  }
  return inputs;
}

StitchInputs inputsWithImages(const SyntheticRig& rig, const std::filesystem::path& folder,
                              const ImageEffects& effects) {
  StitchInputs inputs;
  inputs.camIDs = rig.ids;
  inputs.paths = rig.writeImages(folder, effects);
  inputs.intrinsics = rig.intrinsicRecords();
  inputs.distortions = rig.distortionRecords();
  inputs.patternSize = rig.board.patternSize();
  inputs.squareSize = static_cast<float>(rig.board.square);
  return inputs;
}

SyntheticRig quickRig(int cameraCount, const ViewGroups& groups,
                      const std::vector<std::string>& ids) {
  RigOptions options;
  options.cameraCount = cameraCount;
  options.groups = groups;
  options.shotsPerGroup = 3;
  options.imageSize = {400, 300};
  options.focal = 320;
  options.board.width = 6;
  options.board.height = 5;
  options.board.square = 35;
  options.ids = ids;
  return makeRig(options);
}

DriverOutcome runDriver(const StitchInputs& inputs) {
  MatrixMap intrinsics, distortions;
  for (const auto& [id, record] : inputs.intrinsics) intrinsics[id] = asMatrix(3, 3, record.matrix);
  for (const auto& [id, record] : inputs.distortions)
    distortions[id] = asMatrix(1, 12, record.coeffs);
  DriverOutcome outcome;
  outcome.rotations["stale"] = outcome.translations["stale"] = cv::Mat::ones(3, 3, CV_64FC1);
  outcome.residuals["stale"] = 1;
  outcome.baseCamIdx = inputs.baseCamIdx;
  const ConsoleCapture console;
  outcome.status = calCameraRTByChessImgs(inputs.camIDs, inputs.paths, intrinsics, distortions,
                                          inputs.patternSize, inputs.squareSize, outcome.rotations,
                                          outcome.translations, outcome.residuals, inputs.minImages,
                                          inputs.saveCornerImages, outcome.baseCamIdx);
  outcome.console = console.text();
  return outcome;
}

EntryOutcome runEntry(const StitchInputs& inputs) {
  EntryOutcome outcome;
  outcome.result = untouchedResult();
  const ConsoleCapture console;
  outcome.status =
      ozkVelmornByChess(inputs.camIDs, inputs.paths, inputs.intrinsics, inputs.distortions,
                        inputs.patternSize, inputs.squareSize, outcome.result, inputs.minImages,
                        inputs.saveCornerImages, inputs.baseCamIdx);
  outcome.console = console.text();
  return outcome;
}

OzKStitchResult untouchedResult() {
  OzKStitchResult result;
  std::memset(&result, 0xa5, sizeof result);
  return result;
}

bool isUntouched(const OzKStitchResult& result) {
  const OzKStitchResult untouched = untouchedResult();
  return std::memcmp(&result, &untouched, sizeof result) == 0;
}

std::string withoutCornerSearch(const std::string& console) {
  std::istringstream lines(console);
  std::string rest;
  for (std::string line; std::getline(lines, line);) {
    const bool search = line.rfind("find corner: ", 0) == 0 || line == "success" ||
                        line == "failed" || line.rfind("load ", 0) == 0;
    if (!search) rest += line + (lines.eof() ? "" : "\n");
  }
  return rest;
}

} // namespace velmorn
