// `velmorn platform`: where a camera stands over a platform, from a board lying on it.
#ifndef VELMORN64_TOOLS_PLATFORM_COMMAND_H
#define VELMORN64_TOOLS_PLATFORM_COMMAND_H

#include <string>

#include "velmorn/platform_pose.h"

namespace velmorn::tool {

struct PlatformOptions {
  std::string image;
  std::string intrinsics; // camera file
  PlatformBoard board;
  std::string output = "platform.json"; // file to write
};

// The summary goes to the standard output. Throws ToolError, with the output file as it was.
void runPlatform(const PlatformOptions& options);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_PLATFORM_COMMAND_H
