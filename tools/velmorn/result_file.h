// Result files: the outcome of a stitching run, for programs.
#ifndef VELMORN64_TOOLS_RESULT_FILE_H
#define VELMORN64_TOOLS_RESULT_FILE_H

#include <map>
#include <string>

#include <opencv2/core.hpp>

#include "velmorn/rig_file.h"
#include "velmorn/stitch_run.h"

namespace velmorn::tool {

// The result as JSON text, one line per matrix row.
//
// path   where the file will stand: the paths in it are relative to its folder
// error  why the run failed; empty for one that did not
std::string resultText(const Rig& rig, const StitchedRig& stitched,
                       const std::string& path = "result.json", const std::string& error = "");

// Where the findings of a failed run go: "result-failed.json" for "result.json".
std::string failedResultPath(const std::string& path);

// baseFromCam by camera id, from a result file. Throws ToolError that names the file.
std::map<std::string, cv::Matx44d> readBaseFromCam(const std::string& path);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_RESULT_FILE_H
