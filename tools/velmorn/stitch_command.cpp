// `velmorn stitch`: the cameras of a rig relative to its base camera.
#include "velmorn/stitch_command.h"

#include <filesystem>
#include <iostream>
#include <system_error>

#include "velmorn/atomic_file.h"
#include "velmorn/board.h"
#include "velmorn/calibration.h"
#include "velmorn/grey_image.h"
#include "velmorn/half_turn.h"
#include "velmorn/plain_shots.h"
#include "velmorn/progress.h"
#include "velmorn/result_file.h"
#include "velmorn/result_table.h"
#include "velmorn/rig_file.h"
#include "velmorn/rig_folder.h"
#include "velmorn/round_numbers.h"
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

// The camera file that a camera's folder lacks, from the images of the board in it.
void calibrateCamera(const Rig& board, const std::vector<std::string>& images,
                     const std::string& output) {
  std::size_t number = 0;
  const BoardViews views = findBoardViews(images, board.board, [&](const BoardView& view) {
    printProgress(++number, images.size(), fileName(view.path),
                  view.problem.empty() ? "board found" : view.problem);
  });
  const Calibration found = calibrate(views, board.board, board.square);
  writeFileAtomically(output, cameraFileText(found));
  printWarning("no camera file was there; " + output + " written, from " +
               counted(usableCount(views), "image") + " of the board, rms error " +
               roughNumberText(found.reprojectionRms) + " pixels");
}

Rig rigOf(const StitchOptions& options) {
  if (!std::filesystem::is_directory(options.rig)) return readRig(options.rig);
  Rig board;
  if (options.board != kDataCodeBoard) {
    board.board = *parseBoard(options.board);
    board.square = *usableSquare(options.square);
  }
  return readRigFolder(options.rig, options.board, options.square,
                       [&](const std::vector<std::string>& images, const std::string& output) {
                         calibrateCamera(board, images, output);
                       });
}

// Findings of a run before this one must not be taken for this one's.
void removeOldFindings(const std::string& output) {
  std::error_code ignored;
  std::filesystem::remove(failedResultPath(output), ignored);
}

[[noreturn]] void keepFindings(const Rig& rig, const StitchFailure& failure,
                               const std::string& output) {
  const std::string path = failedResultPath(output);
  try {
    writeFileAtomically(path, resultText(rig, failure.found(), path, failure.what()));
  } catch (const ToolError& error) { // the run's own failure matters more
    throw ToolError(std::string(failure.what()) +
                    "; its findings could not be kept: " + error.what());
  }
  throw ToolError(std::string(failure.what()) + "; velmorn check " + path + " says more");
}

StitchedRig stitchChecked(const Rig& rig) {
  StitchedRig stitched = stitchRig(rig, reportImage);
  requireSameFirstCorner(rig, stitched);
  return stitched;
}

} // namespace

void runStitch(const StitchOptions& options) {
  const Rig rig = rigOf(options);
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
