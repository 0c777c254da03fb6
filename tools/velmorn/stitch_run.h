// One stitching run of a rig.
#ifndef VELMORN64_TOOLS_STITCH_RUN_H
#define VELMORN64_TOOLS_STITCH_RUN_H

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "velmorn/camera_links.h"
#include "velmorn/rig_file.h"
#include "velmorn/shot_record.h"
#include "velmorn/stitch_messages.h"
#include "velmorn/tool_error.h"
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
  bool isLinked = true;        // a run that failed may leave it without a place and a library entry
  std::size_t imagesFound = 0; // images with the board
  std::size_t imagesTotal = 0;
};

struct StitchedRig {
  std::size_t base = 0;                // index in `cameras`
  std::vector<StitchedCamera> cameras; // in the rig's order
  ShotMap shots;                       // what every image gave
  float square = 0;                    // side of a square; of a data-code board as its codes say
};

// A run whose images were looked at and that gave no usable result: what there is to know of it.
class StitchFailure : public ToolError {
 public:
  StitchFailure(const std::string& reason, StitchedRig found);
  const StitchedRig& found() const { return *found_; }

 private:
  std::shared_ptr<const StitchedRig> found_; // shared: copying an exception must not fail
};

// Runs the library on the rig; `report` is called for every image. Writes what the library writes
// into the working directory, and nothing to the standard output. Throws StitchFailure that names
// the camera for a run that does not link all of them, and ToolError for one that the library
// refuses or that ends in a number that is not finite.
//
// A plain board's residual is the library's: how far its corners, as the two cameras of a link
// place them, are apart in the mean. With data codes the library links two cameras by one board
// position and has no residual; the same distance in their other common positions stands for it.
StitchedRig stitchRig(const Rig& rig, const std::function<void(const ImageReport&)>& report);

// A camera of a finished run with its place and its numbers of images. Throws ToolError for one
// that has no place.
StitchedCamera startCamera(const std::string& id, const PlaceMap& places,
                           const OutcomeMap& outcomes);

// A run that linked no camera, with what its images gave.
StitchedRig unlinkedRig(const Rig& rig, const OutcomeMap& outcomes, ShotMap shots);

// Throws ToolError that names the camera when one of its numbers is not finite.
void requireFinite(const StitchedCamera& camera);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_STITCH_RUN_H
