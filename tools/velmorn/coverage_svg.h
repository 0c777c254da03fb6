// The map of where in a camera's image the board was seen.
#ifndef VELMORN64_TOOLS_COVERAGE_SVG_H
#define VELMORN64_TOOLS_COVERAGE_SVG_H

#include <string>

#include "velmorn/coverage.h"
#include "velmorn/stitch_record.h"

namespace velmorn::tool {

// An inline <svg> in the image's proportions: cells darker the more shots cover them, and a dot at
// every corner. Empty without an image size.
std::string coverageSvg(const CameraRecord& camera, const Coverage& coverage);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_COVERAGE_SVG_H
