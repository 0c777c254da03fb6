// `velmorn stitch`: the cameras of a rig relative to its base camera.
#include "velmorn/stitch_command.h"

#include <filesystem>
#include <iostream>
#include <system_error>

#include "velmorn/atomic_file.h"
#include "velmorn/grey_image.h"
#include "velmorn/half_turn.h"
#include "velmorn/plain_shots.h"
#include "velmorn/progress.h"
#include "velmorn/result_file.h"
#include "velmorn/result_table.h"
#include "velmorn/rig_file.h"
#include "velmorn/stitch_run.h"
#include "velmorn/tool_error.h"

namespace velmorn::tool {
namespace {

const char* outcomeText(ImageOutcome outcome) {
  switch (outcome) {
    case ImageOutcome::kBoardFound:
      return "board found";
    case ImageOutcome::kNoBoard:
      return "no board found";
    case ImageOutcome::kNotLoaded:
      return "could not be loaded, ignored";
    case ImageOutcome::kWrongSize:
      return "other size than the camera's first image, ignored";
    case ImageOutcome::kUnknown:
      break;
  }
  return "unknown";
}

void reportImage(const ImageReport& image) {
  printProgress(image.number, image.total, image.camera + " " + fileName(image.path),
                image.detail.empty() ? outcomeText(image.outcome) : image.detail);
}

// Intrinsics belong to one image size; with another the result is plausible and wrong.
void warnAboutSizes(const Rig& rig) {
  for (const RigCamera& camera : rig.cameras) {
    if (camera.model.imageSize.area() == 0) continue;
    const cv::Size size = firstImageSize(camera);
    if (size.area() == 0 || size == camera.model.imageSize) continue;
    printWarning("camera " + inQuotes(camera.id) + ": the images are " + sizeText(size) + ", but " +
                 camera.intrinsicsPath + " is for " + sizeText(camera.model.imageSize));
  }
}

// Findings of a run before this one must not be taken for this one's.
void removeOldFindings(const std::string& output) {
  std::error_code ignored;
  std::filesystem::remove(failedResultPath(output), ignored);
}

[[noreturn]] void keepFindings(const Rig& rig, const StitchFailure& failure,
                               const std::string& output) {
  const std::string path = failedResultPath(output);
  writeFileAtomically(path, resultText(rig, failure.found(), path, failure.what()));
  throw ToolError(std::string(failure.what()) + "; velmorn check " + path + " says more");
}

StitchedRig stitchChecked(const Rig& rig) {
  StitchedRig stitched = stitchRig(rig, reportImage);
  requireSameFirstCorner(rig, stitched);
  return stitched;
}

} // namespace

void runStitch(const StitchOptions& options) {
  const Rig rig = readRig(options.rig);
  requireWritable(options.output);
  removeOldFindings(options.output);
  warnAboutSizes(rig);
  if (const std::string warning = halfTurnWarning(rig); !warning.empty()) printWarning(warning);
  StitchedRig stitched;
  try {
    stitched = stitchChecked(rig);
  } catch (const StitchFailure& failure) {
    keepFindings(rig, failure, options.output);
  }
  writeFileAtomically(options.output, resultText(rig, stitched, options.output));
  std::cout << resultTable(stitched);
}

} // namespace velmorn::tool
