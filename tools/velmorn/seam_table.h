// What was found at the seams, for people and for programs.
#ifndef VELMORN64_TOOLS_SEAM_TABLE_H
#define VELMORN64_TOOLS_SEAM_TABLE_H

#include <string>
#include <vector>

#include "velmorn/seam_check.h"

namespace velmorn::tool {

// One line per seam under a heading: the cameras, the points compared, their share of those in
// view, and median and 90th percentile of the distances.
//
// ids  of the cameras, by index
std::string seamTable(const std::vector<Seam>& seams, const std::vector<std::string>& ids);

// The same as JSON text.
std::string seamFileText(const std::vector<Seam>& seams, const std::vector<std::string>& ids);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_SEAM_TABLE_H
