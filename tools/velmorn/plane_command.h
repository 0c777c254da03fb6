// `velmorn plane`: the reference plane that one camera sees.
#ifndef VELMORN64_TOOLS_PLANE_COMMAND_H
#define VELMORN64_TOOLS_PLANE_COMMAND_H

#include <string>

namespace velmorn::tool {

struct PlaneOptions {
  std::string input;                 // point cloud or depth image
  float threshold = 0;               // largest distance of an inlier, length unit
  std::string intrinsics;            // camera file, for a depth image
  double depthScale = 1;             // length units per count, for a depth image
  std::string output = "plane.json"; // file to write
};

// The summary goes to the standard output. Throws ToolError, with the output file as it was.
void runPlane(const PlaneOptions& options);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_PLANE_COMMAND_H
