// A choice of corners spread evenly over the grid.
#ifndef VELMORN64_PROVIDERS_BRANTIS64_EVEN_SPREAD_H
#define VELMORN64_PROVIDERS_BRANTIS64_EVEN_SPREAD_H

#include <cstddef>
#include <vector>

#include "brantis64/board_grid.h"

namespace velmorn::brantis {

// All corners if they are no more than `most`; else each time the one that is farthest from those
// already chosen, which takes the outermost ones first. Ordered by row, then column.
std::vector<GridCorner> evenSpread(std::vector<GridCorner> corners, std::size_t most);

} // namespace velmorn::brantis

#endif // VELMORN64_PROVIDERS_BRANTIS64_EVEN_SPREAD_H
