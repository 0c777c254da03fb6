// The command line of `velmorn merge`.
#ifndef VELMORN64_TOOLS_MERGE_ARGUMENTS_H
#define VELMORN64_TOOLS_MERGE_ARGUMENTS_H

#include <CLI/CLI.hpp>

#include "velmorn/merge_command.h"

namespace velmorn::tool {

// Adds the command to the tool. The options are filled when it is parsed.
void addMerge(CLI::App& app, MergeOptions& options);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_MERGE_ARGUMENTS_H
