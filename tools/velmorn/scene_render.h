// Images that a camera takes of a scene.
//
// One scene, camera and set of effects gives one image, byte for byte, in every run.
#ifndef VELMORN64_TOOLS_SCENE_RENDER_H
#define VELMORN64_TOOLS_SCENE_RENDER_H

#include <cstdint>

#include <opencv2/core.hpp>

#include "velmorn/scene_camera.h"
#include "velmorn/scene_model.h"

namespace velmorn::tool {

// What a depth camera does to the true depth.
struct DepthEffects {
  double step = 1;       // length units per count
  double noiseSigma = 0; // standard deviation, length units
  double holeShare = 0;  // part of the pixels without a measurement for no reason, 0 to 1
  double edgeHeight = 0; // pixels next to one (beside, above, below) whose true depth differs by
                         // more, in length units, have no measurement; 0: all keep theirs
  std::uint64_t seed = 1;
};

// What a colour camera does to the picture.
struct ColorEffects {
  int subpixels = 1;     // rays per pixel and direction
  double noiseSigma = 0; // standard deviation per channel, of 0 to 255
  std::uint64_t seed = 1;
};

// CV_16UC1: depth along the camera's z axis in counts, to the nearest one; 0 where nothing is seen
// or the depth has no count of 1 to 65535.
cv::Mat renderDepth(const Scene& scene, const SceneCamera& camera,
                    const DepthEffects& effects = {});

// CV_8UC3, BGR.
cv::Mat renderColor(const Scene& scene, const SceneCamera& camera,
                    const ColorEffects& effects = {});

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_SCENE_RENDER_H
