// One stitching run of a rig.
#ifndef VELMORN64_TOOLS_STITCH_RUN_H
#define VELMORN64_TOOLS_STITCH_RUN_H

#include <cstddef>
#include <functional>
#include <vector>

#include "velmorn/camera_links.h"
#include "velmorn/rig_file.h"
#include "velmorn/stitch_messages.h"
#include "velmorn64.h"

namespace velmorn::tool {

// One camera of a finished run.
struct StitchedCamera {
  std::string id;
  CameraPlace place;
  float residual = 0;                // of the link to the parent, length unit; base: 0
  tagOzKCamExtrinsic libraryEntry{}; // as the library wrote it
  std::size_t imagesFound = 0;       // images with the board
  std::size_t imagesTotal = 0;
};

struct StitchedRig {
  std::size_t base = 0;                // index in `cameras`
  std::vector<StitchedCamera> cameras; // in the rig's order
};

// Runs the library on the rig; `report` is called for every image. Writes what the library writes
// into the working directory, and nothing to the standard output. Throws ToolError that names the
// camera for a run that does not link all of them or that ends in a number that is not finite.
StitchedRig stitchRig(const Rig& rig, const std::function<void(const ImageReport&)>& report);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_STITCH_RUN_H
