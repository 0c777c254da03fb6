// What stands where on the sheet of a printed board.
#include "velmorn/board_sheet.h"

#include <algorithm>
#include <optional>

#include "velmorn/page_choice.h"

namespace velmorn::tool {
namespace {

// Grid lines in millimetres; the same number wherever a line is asked for.
class Grid {
 public:
  Grid(const PrintedBoard& board, cv::Point2d origin, int modules)
      : board_(board), origin_(origin), modules_(modules) {}

  // The part of square (a, b) that is on the board; the rim cuts the squares around it.
  InkBox square(int a, int b) const {
    return {x(cut(a - 1, board_.spec.columns)), y(cut(b - 1, board_.spec.rows)),
            x(cut(a, board_.spec.columns)), y(cut(b, board_.spec.rows))};
  }

  // Modules from `first` to before `end` of a row of the code of square (a, b).
  InkBox modules(int a, int b, int row, int first, int end) const {
    return {x(inCode(a, first)), y(inCode(b, row)), x(inCode(a, end)), y(inCode(b, row + 1))};
  }

 private:
  double x(double line) const { return origin_.x + line * board_.spec.square; }
  double y(double line) const { return origin_.y + line * board_.spec.square; }

  double cut(int line, int squares) const {
    const double rim = board_.plain ? 0 : kPlainRim;
    return std::clamp(static_cast<double>(line), -rim, squares + rim);
  }

  double inCode(int square, int module) const {
    return square - 1 + (1 - kCodeShare) / 2 + kCodeShare * module / modules_;
  }

  const PrintedBoard& board_;
  cv::Point2d origin_;
  int modules_;
};

void addSquares(const PrintedBoard& board, const Grid& grid, std::vector<InkBox>& ink) {
  const int rim = board.plain ? 0 : 1;
  for (int b = 1 - rim; b <= board.spec.rows + rim; ++b)
    for (int a = 1 - rim; a <= board.spec.columns + rim; ++a)
      if (isWhiteSquare(a, b) == board.plain) ink.push_back(grid.square(a, b));
}

// One box for every run of dark modules.
void addCode(const CodeBoardSymbols& symbols, int a, int b, const Grid& grid,
             std::vector<InkBox>& ink) {
  const int modules = symbols.modules();
  for (int row = 0; row < modules; ++row)
    for (int column = 0; column < modules; ++column) {
      const int first = column;
      while (column < modules && symbols.isDark(a, b, row, column)) ++column;
      if (column > first) ink.push_back(grid.modules(a, b, row, first, column));
    }
}

void addCodes(const PrintedBoard& board, const CodeBoardSymbols& symbols, const Grid& grid,
              std::vector<InkBox>& ink) {
  for (int b = 1; b <= board.spec.rows; ++b)
    for (int a = 1; a <= board.spec.columns; ++a)
      if (isWhiteSquare(a, b)) addCode(symbols, a, b, grid, ink);
}

// Pattern and footer together in the middle of the page.
void place(const PrintedBoard& board, const SheetFooter& footer, BoardSheet& sheet) {
  const cv::Size2d pattern = board.patternSize();
  const double height = pattern.height + board.clearance() + footer.size.height;
  const double left = (sheet.page.width - pattern.width) / 2;
  const double top = (sheet.page.height - height) / 2;
  sheet.origin = {left + board.rim(), top + board.rim()};

  const bool isWider = footer.size.width > pattern.width;
  const cv::Point2d corner(isWider ? (sheet.page.width - footer.size.width) / 2 : left,
                           top + pattern.height + board.clearance());
  const cv::Rect2d bar = footer.bar + corner;
  sheet.bar = {bar.x, bar.y, bar.x + bar.width, bar.y + bar.height};
  for (const SheetLine& line : footer.lines)
    sheet.lines.push_back({line.start + corner, line.text});
}

} // namespace

BoardSheet layOut(const PrintedBoard& board, const Paper& paper) {
  std::optional<CodeBoardSymbols> symbols;
  if (!board.plain) symbols.emplace(board.spec);

  BoardSheet sheet;
  sheet.modules = symbols ? symbols->modules() : 0;
  sheet.page = choosePage(board, sheet.modules, paper);
  place(board, footerOf(board, sheet.modules, sheet.page.width - 2 * board.clearance()), sheet);
  const Grid grid(board, sheet.origin, sheet.modules);
  addSquares(board, grid, sheet.pattern);
  if (symbols) addCodes(board, *symbols, grid, sheet.pattern);
  return sheet;
}

} // namespace velmorn::tool
