// The outcome of a stitching run, for people.
#ifndef VELMORN64_TOOLS_RESULT_TABLE_H
#define VELMORN64_TOOLS_RESULT_TABLE_H

#include <string>

#include "velmorn/stitch_run.h"

namespace velmorn::tool {

// One line per camera under a heading: what it is linked to, the link's residual, and rotation,
// position and distance in the base camera's frame (baseFromCam).
std::string resultTable(const StitchedRig& stitched);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_RESULT_TABLE_H
