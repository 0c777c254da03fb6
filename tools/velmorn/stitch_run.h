// One stitching run of a rig.
#ifndef VELMORN64_TOOLS_STITCH_RUN_H
#define VELMORN64_TOOLS_STITCH_RUN_H

#include <cstddef>
#include <functional>
#include <optional>
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
  std::optional<float> residual;     // of the link to the parent, length unit; base: 0; nothing
                                     // when there is no image to compute it from
  std::size_t imagesShared = 0;      // board positions in common with the parent
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
//
// A plain board's residual is the library's: how far its corners, as the two cameras of a link
// place them, are apart in the mean. With data codes the library links two cameras by one board
// position and has no residual; the same distance in their other common positions stands for it.
StitchedRig stitchRig(const Rig& rig, const std::function<void(const ImageReport&)>& report);

// A camera of a finished run with its place and its numbers of images. Throws ToolError for one
// that has no place.
StitchedCamera startCamera(const std::string& id, const PlaceMap& places,
                           const OutcomeMap& outcomes);

// Throws ToolError that names the camera when one of its numbers is not finite.
void requireFinite(const StitchedCamera& camera);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_STITCH_RUN_H
