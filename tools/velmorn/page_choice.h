// The page that a board is printed on.
#ifndef VELMORN64_TOOLS_PAGE_CHOICE_H
#define VELMORN64_TOOLS_PAGE_CHOICE_H

#include <opencv2/core.hpp>

#include "velmorn/paper.h"
#include "velmorn/printed_board.h"

namespace velmorn::tool {

constexpr double kMaxPage = 5080; // mm, the longest side that a PDF page may have

// The page's size in millimetres: the paper, turned if the board fits better, or what the board
// needs. Throws ToolError for a board that the paper does not hold, with what it would hold.
//
// modules  per side of a code; 0 for a plain board
cv::Size2d choosePage(const PrintedBoard& board, int modules, const Paper& paper);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_PAGE_CHOICE_H
