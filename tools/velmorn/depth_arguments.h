// The command line of `velmorn aerial`, `average`, `background` and `field`.
#ifndef VELMORN64_TOOLS_DEPTH_ARGUMENTS_H
#define VELMORN64_TOOLS_DEPTH_ARGUMENTS_H

#include <CLI/CLI.hpp>

#include "velmorn/aerial_command.h"
#include "velmorn/average_command.h"
#include "velmorn/background_command.h"
#include "velmorn/field_command.h"

namespace velmorn::tool {

// Add the command to the tool. The options are filled when it is parsed.
void addAerial(CLI::App& app, AerialOptions& options);
void addAverage(CLI::App& app, AverageOptions& options);
void addBackground(CLI::App& app, BackgroundOptions& options);
void addField(CLI::App& app, FieldOptions& options);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_DEPTH_ARGUMENTS_H
