// Lenses and places of simulated cameras.
#ifndef VELMORN64_TOOLS_SIMULATE_CAMERAS_H
#define VELMORN64_TOOLS_SIMULATE_CAMERAS_H

#include <vector>

#include <opencv2/core.hpp>

#include "velmorn/scene_camera.h"
#include "velmorn/simulate_job.h"

namespace velmorn::tool {

// worldFromCam of a place.
cv::Matx44d worldFromCamAt(const SimulatedPlace& place);

// The job's cameras. Those without a place stand in a row along a conveyor, or in a ring around a
// platform's middle, a little off as the seed has it. Throws ToolError for a lens whose distortion
// cannot be undone.
std::vector<SceneCamera> simulatedCameras(const SimulateJob& job);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_SIMULATE_CAMERAS_H
