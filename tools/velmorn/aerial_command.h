// `velmorn aerial`: what depth cameras see, from above.
#ifndef VELMORN64_TOOLS_AERIAL_COMMAND_H
#define VELMORN64_TOOLS_AERIAL_COMMAND_H

#include <string>

namespace velmorn::tool {

struct AerialOptions {
  std::string job;                   // job file
  std::string output = "aerial.png"; // picture to write; the legend comes beside it
};

// Progress goes to the standard error, the summary to the standard output. Throws ToolError, with
// the output files as they were.
void runAerial(const AerialOptions& options);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_AERIAL_COMMAND_H
