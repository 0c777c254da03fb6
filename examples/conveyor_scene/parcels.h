// The example's scene: parcels on a conveyor belt under two depth cameras. Lengths in millimetres.
#ifndef VELMORN64_EXAMPLES_PARCELS_H
#define VELMORN64_EXAMPLES_PARCELS_H

#include <string>
#include <vector>

#include "velmorn/scene_camera.h"
#include "velmorn/scene_model.h"

struct NamedCamera {
  std::string id;
  velmorn::tool::SceneCamera camera;
};

// A belt between two rails over the floor, with fourteen parcels.
velmorn::tool::Scene parcelsOnBelt();

// "cam1" looks straight down, "cam2" stands 700 along the belt and leans back towards it. Both see
// the belt's middle.
std::vector<NamedCamera> camerasOverBelt();

#endif // VELMORN64_EXAMPLES_PARCELS_H
