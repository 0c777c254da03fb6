// The corners that are handed out, and their final places.
#ifndef VELMORN64_PROVIDERS_BRANTIS64_FINAL_FIT_H
#define VELMORN64_PROVIDERS_BRANTIS64_FINAL_FIT_H

#include <cstddef>
#include <vector>

#include "brantis64/board_grid.h"
#include "brantis64/corner_search.h"

namespace velmorn::brantis {

// At most `most` of the grid's corners, spread evenly, each fitted by all that is known around it.
// Where one fails or something in front of the board disturbs it, the nearest others take its
// place. Ordered by row, then column.
std::vector<GridCorner> fitFinally(CornerSearch& search, const cv::Mat1b& grey,
                                   const CornerGrid& grid, std::size_t most);

} // namespace velmorn::brantis

#endif // VELMORN64_PROVIDERS_BRANTIS64_FINAL_FIT_H
