// `velmorn average`: the mean of a burst of images.
#ifndef VELMORN64_TOOLS_AVERAGE_COMMAND_H
#define VELMORN64_TOOLS_AVERAGE_COMMAND_H

#include <string>
#include <vector>

namespace velmorn::tool {

struct AverageOptions {
  std::vector<std::string> images; // file names and patterns
  std::string output;              // image to write
};

// Progress goes to the standard error, the summary to the standard output. Throws ToolError, with
// the output file as it was.
void runAverage(const AverageOptions& options);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_AVERAGE_COMMAND_H
