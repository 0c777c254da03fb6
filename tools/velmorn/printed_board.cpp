// A board to print.
#include "velmorn/printed_board.h"

#include "velmorn/grey_image.h"
#include "velmorn/paper.h"

namespace velmorn::tool {

std::string describe(const PrintedBoard& board) {
  return std::string(board.plain ? "plain chessboard, " : "data-code board, ") +
         sizeText({board.spec.columns, board.spec.rows}) + " squares of " +
         shortText(board.spec.square) + " mm";
}

std::string innerCorners(const PrintedBoard& board) {
  return sizeText({board.spec.columns - 1, board.spec.rows - 1});
}

} // namespace velmorn::tool
