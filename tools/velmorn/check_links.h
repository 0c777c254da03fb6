// Whether the board views link all cameras of a run.
#ifndef VELMORN64_TOOLS_CHECK_LINKS_H
#define VELMORN64_TOOLS_CHECK_LINKS_H

#include "velmorn/finding.h"
#include "velmorn/stitch_record.h"

namespace velmorn::tool {

// Cameras that the common board positions do not connect, and for each the camera that it lacks
// views with; links that rest on fewer than three positions.
Findings checkLinks(const StitchRecord& run);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_CHECK_LINKS_H
