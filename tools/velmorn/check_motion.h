// Whether the cameras of a run stood still and took the board for the same way up.
#ifndef VELMORN64_TOOLS_CHECK_MOTION_H
#define VELMORN64_TOOLS_CHECK_MOTION_H

#include "velmorn/finding.h"
#include "velmorn/stitch_record.h"

namespace velmorn::tool {

// Compares all pairs of cameras that share board positions. What several pairs show is put down to
// the camera that they have in common.
Findings checkMotion(const StitchRecord& run);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_CHECK_MOTION_H
