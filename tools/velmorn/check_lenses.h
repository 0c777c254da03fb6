// Whether the cameras' intrinsics fit their images.
#ifndef VELMORN64_TOOLS_CHECK_LENSES_H
#define VELMORN64_TOOLS_CHECK_LENSES_H

#include "velmorn/finding.h"
#include "velmorn/stitch_record.h"

namespace velmorn::tool {

// Image size and intrinsics' size; reprojection errors far from the other cameras' or large in
// themselves; intrinsics that the images contradict; single images far worse than the camera's
// others.
Findings checkLenses(const StitchRecord& run);

// The median of a camera's reprojection errors; 0 without an image with the board.
double medianReprojectionError(const CameraRecord& camera);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_CHECK_LENSES_H
