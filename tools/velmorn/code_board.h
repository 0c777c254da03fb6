// Data-code boards: what stands in which square.
//
// Square (a, b) is in column a and row b, both from 1. The board's frame has its origin at the
// outer upper left corner of square (1, 1), x right, y down as printed. Squares with an even a + b
// are white and carry a code; the others are black. Around the coded squares the chess pattern goes
// on for half a square without codes, so that every corner of a coded square is a true corner.
#ifndef VELMORN64_TOOLS_CODE_BOARD_H
#define VELMORN64_TOOLS_CODE_BOARD_H

#include <string>
#include <vector>

#include <opencv2/core.hpp>

namespace velmorn::tool {

constexpr double kCodeShare = 0.75; // side of a code, squares
constexpr double kPlainRim = 0.5;   // width of the pattern around the coded squares, squares

struct CodeBoardSpec {
  int columns = 20;   // coded area, squares
  int rows = 14;      // coded area, squares
  double square = 20; // side of a square, length unit
};

bool isWhiteSquare(int a, int b);

// The text of a square's code, "a,b,s" with the shortest form of s.
std::string codeText(int a, int b, double square);

// All symbols of a board, of one size.
class CodeBoardSymbols {
 public:
  // Throws ToolError for numbers that no symbol holds.
  explicit CodeBoardSymbols(const CodeBoardSpec& spec);

  int modules() const { return modules_; }

  // Whether module (row, column) of the code of square (a, b) is dark. Only for white squares of
  // the coded area.
  bool isDark(int a, int b, int row, int column) const;

 private:
  int columns_;
  int modules_;
  std::vector<cv::Mat_<uchar>> symbols_; // row by row, empty for black squares
};

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_CODE_BOARD_H
