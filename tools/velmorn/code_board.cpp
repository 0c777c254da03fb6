// Data-code boards: what stands in which square.
#include "velmorn/code_board.h"

#include <algorithm>
#include <charconv>

#include "velmorn/data_matrix.h"

namespace velmorn::tool {

bool isWhiteSquare(int a, int b) { return (a + b) % 2 == 0; }

std::string codeText(int a, int b, double square) {
  char number[64];
  const auto end = std::to_chars(number, number + sizeof number, static_cast<float>(square),
                                 std::chars_format::fixed);
  return std::to_string(a) + "," + std::to_string(b) + "," + std::string(number, end.ptr);
}

CodeBoardSymbols::CodeBoardSymbols(const CodeBoardSpec& spec)
    : columns_(spec.columns), modules_(0) {
  for (int b = 1; b <= spec.rows; ++b)
    for (int a = 1; a <= spec.columns; ++a)
      if (isWhiteSquare(a, b))
        modules_ = std::max(modules_, smallestDataMatrix(codeText(a, b, spec.square)));

  for (int b = 1; b <= spec.rows; ++b)
    for (int a = 1; a <= spec.columns; ++a)
      symbols_.push_back(isWhiteSquare(a, b) ? dataMatrix(codeText(a, b, spec.square), modules_)
                                             : cv::Mat_<uchar>());
}

bool CodeBoardSymbols::isDark(int a, int b, int row, int column) const {
  const int index = (b - 1) * columns_ + (a - 1);
  return symbols_[static_cast<std::size_t>(index)](row, column) != 0;
}

} // namespace velmorn::tool
