// What the header of a PLY file announces, checked against the file before it is believed.
#ifndef VELMORN64_TOOLS_PLY_HEADER_H
#define VELMORN64_TOOLS_PLY_HEADER_H

#include <string>

namespace velmorn::tool {

// Throws ToolError unless the header is complete, announces no more than the file can hold and has
// the points' colours in the order that the reader behind it counts on, which allocates by these
// numbers.
//
// path  a regular file
void requireSoundPlyHeader(const std::string& path);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_PLY_HEADER_H
