// `velmorn corners`: what is found of a board in one image.
#ifndef VELMORN64_TOOLS_CORNERS_COMMAND_H
#define VELMORN64_TOOLS_CORNERS_COMMAND_H

#include <optional>
#include <string>

#include "velmorn64.h"

namespace velmorn::tool {

struct CornersOptions {
  std::string image;
  std::optional<tagOzKSize> board; // inner corners of a plain board; nothing for data codes
  bool allCorners = false;         // list every corner
  std::string csv;                 // file to write with every corner; may be empty
  std::string output;              // picture to write; may be empty
};

// The table goes to the standard output. Throws ToolError, with the output files as they were.
void runCorners(const CornersOptions& options);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_CORNERS_COMMAND_H
