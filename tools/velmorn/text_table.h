// Tables of plain text.
#ifndef VELMORN64_TOOLS_TEXT_TABLE_H
#define VELMORN64_TOOLS_TEXT_TABLE_H

#include <cstddef>
#include <string>
#include <vector>

namespace velmorn::tool {

// One line per row, all rows of equally many cells. The first `textColumns` columns stand to the
// left, the others to the right.
std::string tableText(const std::vector<std::vector<std::string>>& rows, std::size_t textColumns);

// The id of a camera as a table shows it: the end of a long one cut off.
std::string shortened(const std::string& id);

// The number with so many decimals.
std::string fixedText(double value, int decimals);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_TEXT_TABLE_H
