// The links of a rig as a drawing.
#ifndef VELMORN64_TOOLS_RELATION_TREE_SVG_H
#define VELMORN64_TOOLS_RELATION_TREE_SVG_H

#include <string>

#include "velmorn/stitch_record.h"

namespace velmorn::tool {

// An inline <svg>: the base to the left, every camera to the right of the one it is linked to, the
// link's residual and its number of shared shots on the line; below, cameras without a link.
std::string relationTreeSvg(const StitchRecord& record);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_RELATION_TREE_SVG_H
