// `velmorn simulate`: a rig to try without hardware.
#ifndef VELMORN64_TOOLS_SIMULATE_COMMAND_H
#define VELMORN64_TOOLS_SIMULATE_COMMAND_H

#include <string>

#include "velmorn/simulate_job.h"

namespace velmorn::tool {

struct SimulateOptions {
  std::string job; // job file; empty for the defaults
  SimulateOverrides overrides;
  std::string output; // folder, made when it is not there
  bool force = false; // replace files
};

// Progress goes to the standard error, the summary to the standard output. The images are written
// one by one, what other commands read comes last. Throws ToolError; nothing is written when the
// job cannot be used or, without `force`, a file is there already.
void runSimulate(const SimulateOptions& options);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_SIMULATE_COMMAND_H
