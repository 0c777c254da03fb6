// What stands below a printed board: a bar to check the print's scale and what the board is.
#ifndef VELMORN64_TOOLS_SHEET_FOOTER_H
#define VELMORN64_TOOLS_SHEET_FOOTER_H

#include <string>
#include <vector>

#include <opencv2/core.hpp>

#include "velmorn/printed_board.h"

namespace velmorn::tool {

constexpr double kSheetTextSize = 2.4; // mm

struct SheetLine {
  cv::Point2d start; // of the base line, mm
  std::string text;
};

// Millimetres from the footer's upper left corner.
struct SheetFooter {
  cv::Size2d size;
  cv::Rect2d bar;
  std::vector<SheetLine> lines; // to the right of the bar
};

// The footer with the longest bar that fits into the width, or else with the shortest one.
//
// modules  per side of a code; 0 for a plain board
SheetFooter footerOf(const PrintedBoard& board, int modules, double width);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_SHEET_FOOTER_H
