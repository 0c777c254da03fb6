// The command line of `velmorn plane` and `velmorn platform`.
#ifndef VELMORN64_TOOLS_PLANE_ARGUMENTS_H
#define VELMORN64_TOOLS_PLANE_ARGUMENTS_H

#include <CLI/CLI.hpp>

#include "velmorn/plane_command.h"
#include "velmorn/platform_command.h"

namespace velmorn::tool {

// Add the command to the tool. The options are filled when it is parsed.
void addPlane(CLI::App& app, PlaneOptions& options);
void addPlatform(CLI::App& app, PlatformOptions& options);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_PLANE_ARGUMENTS_H
