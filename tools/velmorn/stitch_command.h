// `velmorn stitch`: the cameras of a rig relative to its base camera.
#ifndef VELMORN64_TOOLS_STITCH_COMMAND_H
#define VELMORN64_TOOLS_STITCH_COMMAND_H

#include <string>

namespace velmorn::tool {

struct StitchOptions {
  std::string rig;                    // rig file, or a folder with a folder per camera
  std::string board;                  // of a folder: inner corners or "data-code"
  double square = 0;                  // of a folder and a plain board: side of a square
  std::string output = "result.json"; // result file to write
};

// Progress goes to the standard error, the table to the standard output. Throws ToolError, with the
// result file as it was.
void runStitch(const StitchOptions& options);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_STITCH_COMMAND_H
