// `velmorn stitch`: the cameras of a rig relative to its base camera.
#include "velmorn/stitch_command.h"

#include <iostream>

#include "velmorn/atomic_file.h"
#include "velmorn/grey_image.h"
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

cv::Size firstImageSize(const RigCamera& camera) {
  for (const std::string& path : camera.images) {
    const cv::Mat grey = readGrey(path);
    if (!grey.empty()) return grey.size();
  }
  return cv::Size();
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

} // namespace

void runStitch(const StitchOptions& options) {
  const Rig rig = readRig(options.rig);
  requireWritable(options.output);
  warnAboutSizes(rig);
  const StitchedRig stitched = stitchRig(rig, reportImage);
  writeFileAtomically(options.output, resultText(rig, stitched));
  std::cout << resultTable(stitched);
}

} // namespace velmorn::tool
