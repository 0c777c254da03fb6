// The tool's command line.
#ifndef VELMORN64_TOOLS_COMMAND_LINE_H
#define VELMORN64_TOOLS_COMMAND_LINE_H

#include <memory>

namespace CLI {
class App;
}

namespace velmorn::tool {

// Exit statuses.
constexpr int kExitSuccess = 0;
constexpr int kExitFailed = 1;     // the run failed; the last line on the standard error says why
constexpr int kExitUsage = 2;      // the command line is wrong
constexpr int kExitNotTrusted = 3; // the check did not trust a result

// The commands with their options and help texts, to be looked at.
std::shared_ptr<const CLI::App> unparsedCommandLine();

// Runs the command that the arguments ask for and returns the exit status.
int runCommandLine(int argc, const char* const* argv);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_COMMAND_LINE_H
