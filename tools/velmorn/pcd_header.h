// What the header of a PCD file announces, checked against the file before it is believed.
#ifndef VELMORN64_TOOLS_PCD_HEADER_H
#define VELMORN64_TOOLS_PCD_HEADER_H

#include <string>

namespace velmorn::tool {

// Throws ToolError unless the header is complete, agrees with itself and announces no more than the
// file can hold. The reader behind it allocates and indexes by these numbers.
//
// path  a regular file
void requireSoundPcdHeader(const std::string& path);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_PCD_HEADER_H
