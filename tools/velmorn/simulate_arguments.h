// The command line of `velmorn simulate`.
#ifndef VELMORN64_TOOLS_SIMULATE_ARGUMENTS_H
#define VELMORN64_TOOLS_SIMULATE_ARGUMENTS_H

#include <CLI/CLI.hpp>

#include "velmorn/simulate_command.h"

namespace velmorn::tool {

// Adds the command to the tool. The options are filled when it is parsed.
void addSimulate(CLI::App& app, SimulateOptions& options);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_SIMULATE_ARGUMENTS_H
