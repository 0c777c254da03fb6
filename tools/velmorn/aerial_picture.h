// The view from above as a picture of the report.
#ifndef VELMORN64_TOOLS_AERIAL_PICTURE_H
#define VELMORN64_TOOLS_AERIAL_PICTURE_H

#include <string>

namespace velmorn::tool {

// Longer side of the embedded picture at most, pixels; larger images are made smaller.
constexpr int kAerialSide = 2000;

// The image as a data: address; PNG, or JPEG where that would be very large. Throws ToolError that
// names the file.
std::string aerialAddress(const std::string& path);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_AERIAL_PICTURE_H
