// `velmorn extrinsic`: operations on one extrinsic.
#ifndef VELMORN64_TOOLS_EXTRINSIC_COMMAND_H
#define VELMORN64_TOOLS_EXTRINSIC_COMMAND_H

#include <string>

#include "velmorn/extrinsic_edits.h"

namespace velmorn::tool {

enum class ExtrinsicTask { kXAxis, kNudge, kTurn, kPlaneModel, kConveyor };

struct ExtrinsicOptions {
  ExtrinsicTask task = ExtrinsicTask::kPlaneModel;
  std::string input;       // file with the extrinsic
  std::string output;      // file to write; empty for the standard output
  tagOzKPoint3Df32 axis{}; // x-axis: camera coordinates
  bool intoPlane = false;  // x-axis: only the part of the axis within the plane
  float step = 0;          // nudge: length unit
  int mode = 0;            // nudge: 1 to 4
  float degrees = 0;       // turn
  bool back = false;       // turn
  ConveyorLine line;       // conveyor
  std::string intrinsics;  // conveyor: camera file
};

// The result goes to the output. Throws ToolError, with an output file as it was.
void runExtrinsic(const ExtrinsicOptions& options);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_EXTRINSIC_COMMAND_H
