// `velmorn intrinsics`: the camera file of one camera from images of the board.
#ifndef VELMORN64_TOOLS_INTRINSICS_COMMAND_H
#define VELMORN64_TOOLS_INTRINSICS_COMMAND_H

#include <string>
#include <vector>

#include "velmorn64.h"

namespace velmorn::tool {

struct IntrinsicsOptions {
  tagOzKSize board{};              // inner corners per row and column
  float square = 0;                // length unit
  std::string output;              // camera file to write
  std::vector<std::string> images; // file names and patterns
};

// Progress goes to the standard error, the result to the standard output. Throws ToolError, with
// the output file as it was.
void runIntrinsics(const IntrinsicsOptions& options);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_INTRINSICS_COMMAND_H
