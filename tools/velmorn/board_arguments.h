// The command line of `velmorn board` and `velmorn corners`.
#ifndef VELMORN64_TOOLS_BOARD_ARGUMENTS_H
#define VELMORN64_TOOLS_BOARD_ARGUMENTS_H

#include <CLI/CLI.hpp>

#include "velmorn/board_command.h"
#include "velmorn/corners_command.h"

namespace velmorn::tool {

// Add the command to the tool. The options are filled when it is parsed.
void addBoard(CLI::App& app, PrintOptions& options);
void addCorners(CLI::App& app, CornersOptions& options);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_BOARD_ARGUMENTS_H
