// A board to print.
#ifndef VELMORN64_TOOLS_PRINTED_BOARD_H
#define VELMORN64_TOOLS_PRINTED_BOARD_H

#include <algorithm>
#include <string>

#include <opencv2/core.hpp>

#include "velmorn/code_board.h"

namespace velmorn::tool {

// Limits of what is printed.
constexpr int kMinCodeSquares = 2;  // per side
constexpr int kMinPlainSquares = 4; // per side: three inner corners
constexpr int kMaxSquares = 200;    // per side
constexpr double kMinSquare = 1;    // mm
constexpr double kMaxSquare = 1000; // mm

// All lengths in millimetres.
struct PrintedBoard {
  CodeBoardSpec spec;
  bool plain = false; // a chessboard without codes and without the rim, its first square black

  double rim() const { return plain ? 0 : kPlainRim * spec.square; }
  int minSquares() const { return plain ? kMinPlainSquares : kMinCodeSquares; }

  // Everything from the first edge to the last, with the rim.
  cv::Size2d patternSize() const {
    return {spec.columns * spec.square + 2 * rim(), spec.rows * spec.square + 2 * rim()};
  }

  // White paper around the pattern. Without a rim the outer squares need more of it to be found.
  double clearance() const {
    constexpr double kPrinterMargin = 5;
    return plain ? std::max(kPrinterMargin, spec.square / 2) : kPrinterMargin;
  }
};

// "data-code board, 20x14 squares of 20 mm"
std::string describe(const PrintedBoard& board);

// The option --board of the other commands for a plain board: "19x13".
std::string innerCorners(const PrintedBoard& board);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_PRINTED_BOARD_H
