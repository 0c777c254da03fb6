// The reprojection errors of a camera's shots as a drawing.
#ifndef VELMORN64_TOOLS_ERROR_BARS_SVG_H
#define VELMORN64_TOOLS_ERROR_BARS_SVG_H

#include <string>

#include "velmorn/stitch_record.h"

namespace velmorn::tool {

// The scale's end that all cameras share: a round number not below any shot's error, pixels.
double errorScale(const StitchRecord& record);

// An inline <svg> with one bar per shot and a cross for one that was refused; empty without shots.
//
// most  error of the scale's end, pixels, above 0
std::string errorBarsSvg(const CameraRecord& camera, double most);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_ERROR_BARS_SVG_H
