// Grows from one square over the board.
#ifndef VELMORN64_PROVIDERS_BRANTIS64_GRID_GROWTH_H
#define VELMORN64_PROVIDERS_BRANTIS64_GRID_GROWTH_H

#include <cstddef>
#include <limits>

#include "brantis64/board_grid.h"
#include "brantis64/corner_search.h"
#include "brantis64/seed_square.h"

namespace velmorn::brantis {

// Finds the corners of the seeds' square, whether the seeds outline the square or its code, and
// sets the search's blur by them. Returns false where there are none; `grid` is untouched then.
bool findSeedCorners(CornerSearch& search, const SeedSquare& square, CornerGrid& grid);

// Adds corners next to known ones, those with the most and nearest known neighbours first, until
// none is left or the grid has `most`.
void growGrid(CornerSearch& search, CornerGrid& grid,
              std::size_t most = std::numeric_limits<std::size_t>::max());

// The same over all of a board. Once the grid has `dense`, only every second column and row is
// looked at, but for the corners outside those: the rim of the board, of the image and of what
// hides the board.
void growOverBoard(CornerSearch& search, CornerGrid& grid, std::size_t dense);

} // namespace velmorn::brantis

#endif // VELMORN64_PROVIDERS_BRANTIS64_GRID_GROWTH_H
