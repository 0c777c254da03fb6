// The resolution of a board's picture.
#ifndef VELMORN64_TOOLS_PRINT_RESOLUTION_H
#define VELMORN64_TOOLS_PRINT_RESOLUTION_H

#include "velmorn/printed_board.h"

namespace velmorn::tool {

struct PrintResolution {
  double pixelsPerMillimetre = 0;
  double pixelsPerModule = 0; // 0 for a plain board
  bool wholePixels = false;   // every edge lies between two pixels

  double dpi() const { return pixelsPerMillimetre * 25.4; }
};

// The resolution next to the one asked for, at most a tenth from it, at which squares and modules
// take whole pixels; else the one asked for.
//
// modules  per side of a code; 0 for a plain board
PrintResolution resolutionNear(const PrintedBoard& board, int modules, double dpi);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_PRINT_RESOLUTION_H
