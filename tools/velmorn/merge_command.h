// `velmorn merge`: the clouds of several depth cameras as one.
#ifndef VELMORN64_TOOLS_MERGE_COMMAND_H
#define VELMORN64_TOOLS_MERGE_COMMAND_H

#include <optional>
#include <string>

namespace velmorn::tool {

struct MergeOptions {
  std::string job;                    // job file
  std::string result = "result.json"; // of a folder: what velmorn stitch wrote
  std::string output = "merged.ply";  // cloud to write
  std::string seams;                  // file for the seams' numbers; empty: none
  std::optional<double> voxel;        // side, length unit; goes before the job's
};

// Progress goes to the standard error, the summary and the seams to the standard output. Throws
// ToolError, with the output files as they were.
void runMerge(const MergeOptions& options);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_MERGE_COMMAND_H
