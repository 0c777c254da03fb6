// The command line of `velmorn report`.
#ifndef VELMORN64_TOOLS_REPORT_ARGUMENTS_H
#define VELMORN64_TOOLS_REPORT_ARGUMENTS_H

#include <CLI/CLI.hpp>

#include "velmorn/report_command.h"

namespace velmorn::tool {

void addReport(CLI::App& app, ReportOptions& options);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_REPORT_ARGUMENTS_H
