// The depth background written down step by step: the yardstick for the bytes.
#ifndef VELMORN64_TESTS_DEPTH_PLAIN_DEPTH_BACKGROUND_H
#define VELMORN64_TESTS_DEPTH_PLAIN_DEPTH_BACKGROUND_H

#include <cstdint>
#include <vector>

#include "velmorn64.h"

namespace velmorn {

struct PlainBackground {
  int width = 0, height = 0;
  std::vector<float> cells;
  std::vector<std::uint8_t> filled; // cells with points of their own
};

// The cells with points have their lowest or highest z, all others 0. For regions and cell sizes
// that make a grid.
PlainBackground plainBinnedCells(const std::vector<tagOzKPoint3Df32>& points, float cellSize,
                                 const tagOzKRect2Df32& region, bool keepHighest);

// Sweeps that push values one cell further, until every cell has one. Needs a filled cell.
void plainFillSweeps(PlainBackground& background);

} // namespace velmorn

#endif // VELMORN64_TESTS_DEPTH_PLAIN_DEPTH_BACKGROUND_H
