// Manual pages of a command-line tool, from its help.
#ifndef VELMORN64_TOOLS_MANUALS_MANUAL_PAGE_H
#define VELMORN64_TOOLS_MANUALS_MANUAL_PAGE_H

#include <map>
#include <string>

#include "manuals/command_entry.h"

namespace velmorn::manuals {

// One page for the tool and one for each of its commands, whose own subcommands stand on its page:
// roff sources by file name, such as "velmorn-stitch.1". The release is such as "velmorn64 1.2.3".
std::map<std::string, std::string> manualPages(const CommandEntry& tool,
                                               const std::string& release);

} // namespace velmorn::manuals

#endif // VELMORN64_TOOLS_MANUALS_MANUAL_PAGE_H
