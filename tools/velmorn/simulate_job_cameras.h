// The cameras of a simulation job.
#ifndef VELMORN64_TOOLS_SIMULATE_JOB_CAMERAS_H
#define VELMORN64_TOOLS_SIMULATE_JOB_CAMERAS_H

#include <optional>
#include <string>
#include <vector>

#include "velmorn/json_object.h"
#include "velmorn/simulate_job.h"

namespace velmorn::tool {

// The keys of a lens, which the job itself may have for all cameras.
const std::vector<std::string>& lensKeys();

// The cameras that the job's key "cameras", a number or a list, stands for; `count` takes the place
// of the number. Throws ToolError, also for a count besides a list.
std::vector<SimulatedCamera> simulatedCamerasFrom(const JsonObject& job,
                                                  std::optional<std::size_t> count);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_SIMULATE_JOB_CAMERAS_H
