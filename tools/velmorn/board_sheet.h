// What stands where on the sheet of a printed board.
#ifndef VELMORN64_TOOLS_BOARD_SHEET_H
#define VELMORN64_TOOLS_BOARD_SHEET_H

#include <vector>

#include <opencv2/core.hpp>

#include "velmorn/paper.h"
#include "velmorn/printed_board.h"
#include "velmorn/sheet_footer.h"

namespace velmorn::tool {

// An area with ink, millimetres from the page's upper left corner. Neighbouring boxes have the same
// number for their common edge.
struct InkBox {
  double left, top, right, bottom;
};

struct BoardSheet {
  cv::Size2d page;    // mm
  cv::Point2d origin; // mm; the outer upper left corner of square (1, 1)
  int modules = 0;    // per side of a code; 0 for a plain board
  InkBox bar{};
  std::vector<InkBox> pattern; // no two overlap
  std::vector<SheetLine> lines;
};

// Lays the board out with a bar to check the print's scale and lines that say what it is. Throws
// ToolError for a board that the paper does not hold, with what it would hold.
BoardSheet layOut(const PrintedBoard& board, const Paper& paper);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_BOARD_SHEET_H
