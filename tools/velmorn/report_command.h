// `velmorn report`: the outcome of a stitching run as a page to look at and to hand over.
#ifndef VELMORN64_TOOLS_REPORT_COMMAND_H
#define VELMORN64_TOOLS_REPORT_COMMAND_H

#include <cstddef>
#include <string>

namespace velmorn::tool {

// Points of the merged cloud that the page shows at most.
constexpr std::size_t kMostCloudPoints = 300'000;

struct ReportOptions {
  std::string result;                 // result file
  std::string output = "report.html"; // page to write
  std::string cloud;                  // merged cloud, PLY; empty without one
  std::string aerial;                 // picture from above; empty without one
  std::string title = "Camera rig report";
};

// Progress goes to the standard error, the summary to the standard output. Throws ToolError, with
// the output file as it was.
void runReport(const ReportOptions& options);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_REPORT_COMMAND_H
