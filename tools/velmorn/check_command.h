// `velmorn check`: whether a calibration is good enough, in plain words.
#ifndef VELMORN64_TOOLS_CHECK_COMMAND_H
#define VELMORN64_TOOLS_CHECK_COMMAND_H

#include <string>
#include <vector>

#include "velmorn/finding.h"
#include "velmorn/stitch_record.h"

namespace velmorn::tool {

struct CheckOptions {
  std::vector<std::string> results; // result files
};

// Everything that can be said about a run, problems first.
Findings checkRun(const StitchRecord& run);

// The text for one result file.
std::string checkText(const std::string& path, const StitchRecord& run, const Findings& findings);

// Prints the text of every file. Returns true when all of them are to be trusted. Of a run that
// failed after an earlier one had written the file, what the failed one found is checked.
bool runCheck(const CheckOptions& options);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_CHECK_COMMAND_H
