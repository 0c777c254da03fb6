// A conveyor belt with boxes on it, as shapes and colours.
//
// The world's frame: x along the belt, y across it, z up; the belt's middle is the origin. Lengths
// are in any one unit, colours blue, green, red from 0 to 255.
#ifndef VELMORN64_TOOLS_SCENE_MODEL_H
#define VELMORN64_TOOLS_SCENE_MODEL_H

#include <vector>

#include <opencv2/core.hpp>

namespace velmorn::tool {

// A box, upright and turned about z. It is seen from outside only.
struct SceneBox {
  cv::Vec3d foot;              // middle of the lower face, world
  cv::Vec3d size;              // length, width, height along the box's own x, y, z
  double degrees = 0;          // from the world's x axis to the box's, towards the world's y axis
  cv::Vec3d color{60, 60, 60}; // BGR
  double tapeWidth = 0;        // of a strip along the box's x axis over its middle; 0: no tape
  cv::Vec3d tapeColor;         // BGR
};

// The belt: a rectangle in z = 0, seen from above only.
struct SceneBelt {
  double length = 0;               // along x
  double width = 0;                // along y
  cv::Vec3d color{110, 110, 110};  // BGR
  double seamSpacing = 0;          // from seam to seam along x, one at x = 0; 0: no seams
  double seamWidth = 0;            // along x
  cv::Vec3d seamColor{55, 55, 55}; // BGR
};

// One light far away, and an even light from everywhere.
struct SceneLight {
  cv::Vec3d towards{0, 0, 1}; // from the scene to the light, any length but 0
  double ambient = 0.4;       // share of the even light, 0 to 1
};

struct Scene {
  SceneBelt belt;
  std::vector<SceneBox> boxes;
  SceneLight light;
  cv::Vec3d background{0, 0, 0}; // BGR, where nothing is
};

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_SCENE_MODEL_H
