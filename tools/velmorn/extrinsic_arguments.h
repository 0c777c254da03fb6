// The command line of `velmorn extrinsic`.
#ifndef VELMORN64_TOOLS_EXTRINSIC_ARGUMENTS_H
#define VELMORN64_TOOLS_EXTRINSIC_ARGUMENTS_H

#include <CLI/CLI.hpp>

#include "velmorn/extrinsic_command.h"

namespace velmorn::tool {

// Adds the command to the tool. The options are filled when it is parsed.
void addExtrinsic(CLI::App& app, ExtrinsicOptions& options);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_EXTRINSIC_ARGUMENTS_H
