// `velmorn extrinsic`: operations on one extrinsic.
#include "velmorn/extrinsic_command.h"

#include <iostream>

#include "velmorn/atomic_file.h"
#include "velmorn/extrinsic_file.h"
#include "velmorn/json_text.h"
#include "velmorn/progress.h"
#include "velmorn/reference_plane.h"
#include "velmorn/tool_error.h"

namespace velmorn::tool {
namespace {

// The extrinsic after the task, with its direction.
NamedExtrinsic outcomeOf(const ExtrinsicOptions& options, const NamedExtrinsic& input,
                         const CameraModel& camera) {
  const tagOzKCamExtrinsic& planeFromCam = input.extrinsic;
  switch (options.task) {
    case ExtrinsicTask::kXAxis:
      return {input.direction,
              withNewXAxis(planeFromCam, options.intoPlane ? intoPlane(planeFromCam, options.axis)
                                                           : options.axis)};
    case ExtrinsicTask::kNudge:
      return {input.direction, nudged(planeFromCam, options.step, options.mode)};
    case ExtrinsicTask::kTurn:
      return {input.direction, turned(planeFromCam, options.degrees, options.back)};
    case ExtrinsicTask::kConveyor:
      return {"conveyorFromCam", conveyorAlong(planeFromCam, options.line, camera)};
    case ExtrinsicTask::kPlaneModel:
      break;
  }
  return input;
}

NamedExtrinsic outcomeNamingTheFile(const ExtrinsicOptions& options, const NamedExtrinsic& input) {
  CameraModel camera;
  if (options.task == ExtrinsicTask::kConveyor) camera = readCameraFile(options.intrinsics);
  try {
    return outcomeOf(options, input, camera);
  } catch (const ToolError& error) {
    throw ToolError(options.input + ": " + error.what());
  }
}

nlohmann::ordered_json resultOf(const ExtrinsicOptions& options, const NamedExtrinsic& input) {
  if (options.task == ExtrinsicTask::kPlaneModel) {
    nlohmann::ordered_json file;
    file["libraryVersion"] = VELMORN64_VERSION;
    file["plane"] = planeJson(planeModelOf(input.extrinsic));
    return file;
  }
  const NamedExtrinsic outcome = outcomeNamingTheFile(options, input);
  if (!isRigid(outcome.extrinsic)) {
    printWarning(
        options.task == ExtrinsicTask::kXAxis && isRigid(input.extrinsic)
            ? "the new x axis is not within the plane; the library then gives a matrix "
              "whose x and y rows are shorter than 1, which is no rigid transform; --into-plane "
              "takes the part within the plane"
            : "the result is no rigid transform, as its input was none");
  }
  return extrinsicJson(outcome);
}

} // namespace

void runExtrinsic(const ExtrinsicOptions& options) {
  const NamedExtrinsic input = readExtrinsicFile(options.input);
  if (!options.output.empty()) requireWritable(options.output);
  const std::string text = fileText(resultOf(options, input));
  if (options.output.empty()) {
    std::cout << text;
  } else {
    writeFileAtomically(options.output, text);
  }
}

} // namespace velmorn::tool
