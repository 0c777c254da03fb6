// `velmorn stitch`: the cameras of a rig relative to its base camera.
#ifndef VELMORN64_TOOLS_STITCH_COMMAND_H
#define VELMORN64_TOOLS_STITCH_COMMAND_H

#include <string>

namespace velmorn::tool {

struct StitchOptions {
  std::string rig;                    // rig file
  std::string output = "result.json"; // result file to write
};

// Progress goes to the standard error, the table to the standard output. Throws ToolError, with the
// result file as it was.
void runStitch(const StitchOptions& options);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_STITCH_COMMAND_H
