// `velmorn background`: the height map of an empty scene.
#ifndef VELMORN64_TOOLS_BACKGROUND_COMMAND_H
#define VELMORN64_TOOLS_BACKGROUND_COMMAND_H

#include <optional>
#include <string>

#include "velmorn64.h"

namespace velmorn::tool {

struct BackgroundOptions {
  std::string input;                      // point cloud
  float cell = 0;                         // side of a cell, length unit
  std::optional<tagOzKRect2Df32> region;  // the cloud's own when not given
  bool keepHighest = false;               // instead of the lowest z of a cell
  int minPoints = 1;                      // least number of points
  std::string output = "background.tiff"; // heights to write; the view comes beside it
};

// The summary goes to the standard output. Throws ToolError, with the output files as they were.
void runBackground(const BackgroundOptions& options);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_BACKGROUND_COMMAND_H
