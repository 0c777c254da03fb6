// Completion of a command line in bash.
#ifndef VELMORN64_TOOLS_MANUALS_COMPLETION_H
#define VELMORN64_TOOLS_MANUALS_COMPLETION_H

#include <string>

#include "manuals/command_entry.h"

namespace velmorn::manuals {

// A script that completes subcommands, options, and files where a value may be one; other values
// are left to the user. It needs bash alone.
std::string bashCompletion(const CommandEntry& tool);

} // namespace velmorn::manuals

#endif // VELMORN64_TOOLS_MANUALS_COMPLETION_H
