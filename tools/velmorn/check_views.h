// Whether the board was seen well: often enough, large enough, everywhere, from different angles.
#ifndef VELMORN64_TOOLS_CHECK_VIEWS_H
#define VELMORN64_TOOLS_CHECK_VIEWS_H

#include "velmorn/finding.h"
#include "velmorn/stitch_record.h"

namespace velmorn::tool {

Findings checkViews(const StitchRecord& run);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_CHECK_VIEWS_H
