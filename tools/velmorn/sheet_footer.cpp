// What stands below a printed board: a bar to check the print's scale and what the board is.
#include "velmorn/sheet_footer.h"

#include <algorithm>
#include <array>

#include "velmorn/grey_image.h"
#include "velmorn/paper.h"

namespace velmorn::tool {
namespace {

constexpr std::array<double, 3> kBarLengths = {100, 50, 20}; // mm
constexpr double kBarHeight = 2;                             // mm
constexpr double kTextGap = 3;                               // mm, between bar and text
constexpr double kLinePitch = 3.2;                           // mm
constexpr double kCharacterWidth = 0.55 * kSheetTextSize;    // mm, more than the font's mean

std::vector<std::string> textsOf(const PrintedBoard& board, int modules, double bar) {
  const std::string last = board.plain ? innerCorners(board) + " inner corners"
                                       : "symbols " + sizeText({modules, modules}) +
                                             ": column, row, side of a square in mm";
  return {"bar " + shortText(bar) + " mm, print at 100 %", describe(board), last};
}

SheetFooter footerWith(const PrintedBoard& board, int modules, double bar) {
  SheetFooter footer;
  footer.bar = {0, 0, bar, kBarHeight};
  std::size_t longest = 0;
  double baseLine = kBarHeight;
  for (const std::string& text : textsOf(board, modules, bar)) {
    footer.lines.push_back({{bar + kTextGap, baseLine}, text});
    longest = std::max(longest, text.size());
    baseLine += kLinePitch;
  }
  footer.size = {bar + kTextGap + static_cast<double>(longest) * kCharacterWidth, baseLine};
  return footer;
}

} // namespace

SheetFooter footerOf(const PrintedBoard& board, int modules, double width) {
  SheetFooter footer;
  for (const double bar : kBarLengths) {
    footer = footerWith(board, modules, bar);
    if (footer.size.width <= width) break;
  }
  return footer;
}

} // namespace velmorn::tool
