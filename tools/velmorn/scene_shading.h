// Colours of a scene's surfaces.
#ifndef VELMORN64_TOOLS_SCENE_SHADING_H
#define VELMORN64_TOOLS_SCENE_SHADING_H

#include <opencv2/core.hpp>

#include "velmorn/scene_geometry.h"
#include "velmorn/scene_model.h"

namespace velmorn::tool {

// The surface's own colour, BGR: seams and tape.
cv::Vec3d surfaceColor(const Scene& scene, const SceneHit& hit);

// What a ray sees, BGR: the surface's colour times ambient + (1 - ambient) * cosine between its
// normal and the light, without the second part where a box stands in the light; the scene's
// background for a ray that meets nothing.
cv::Vec3d seenColor(const Scene& scene, const SceneGeometry& geometry, const SceneRay& ray);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_SCENE_SHADING_H
