// Point clouds as plain text.
#ifndef VELMORN64_TOOLS_XYZ_FILE_H
#define VELMORN64_TOOLS_XYZ_FILE_H

#include <string>

#include "velmorn/point_cloud.h"

namespace velmorn::tool {

// The points of a text with "x y z" on every line, separated by blanks or tabs; "nan" and "inf" are
// numbers. Further columns, empty lines and what follows a '#' are ignored. Throws ToolError that
// names the line for one that does not begin with three numbers.
PointCloud parseXyz(const std::string& text);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_XYZ_FILE_H
