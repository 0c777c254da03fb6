// The cameras of a simulated rig over their scene.
#ifndef VELMORN64_TOOLS_SIMULATE_RIG_H
#define VELMORN64_TOOLS_SIMULATE_RIG_H

#include <cstddef>
#include <vector>

#include <opencv2/core.hpp>

#include "velmorn/scene_camera.h"
#include "velmorn/scene_model.h"
#include "velmorn/simulate_job.h"

namespace velmorn::tool {

struct SimulatedRig {
  std::vector<SceneCamera> cameras;
  std::size_t base = 0; // index of the base camera
  cv::Rect2d seen;      // part of the ground, z = 0 of the world, that the cameras see
  Scene ground;         // the belt or table alone
  Scene scene;          // with what lies on it

  // The true transform, as `velmorn stitch` is to find it.
  cv::Matx44d baseFromCam(std::size_t camera) const;
};

// The job's cameras over a belt or table that is as large as they need it, its things in proportion
// to their height. Unless the job says it, the base is the middle camera of a conveyor and the
// first one of a platform. Throws ToolError for what cannot be rendered.
SimulatedRig simulatedRig(const SimulateJob& job);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_SIMULATE_RIG_H
