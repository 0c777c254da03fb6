// One stitching run of a rig before a data-code board.
#ifndef VELMORN64_TOOLS_DATA_CODE_RUN_H
#define VELMORN64_TOOLS_DATA_CODE_RUN_H

#include <functional>

#include "velmorn/stitch_run.h"

namespace velmorn::tool {

// As stitchRig, which calls it. Looks at every image before the library does: only so can it say
// what each of them gave, and how well the links agree.
StitchedRig stitchDataCodeRig(const Rig& rig,
                              const std::function<void(const ImageReport&)>& report);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_DATA_CODE_RUN_H
