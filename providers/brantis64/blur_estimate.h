// How blurred the image is.
#ifndef VELMORN64_PROVIDERS_BRANTIS64_BLUR_ESTIMATE_H
#define VELMORN64_PROVIDERS_BRANTIS64_BLUR_ESTIMATE_H

#include <cstddef>

#include "brantis64/board_grid.h"
#include "brantis64/corner_search.h"

namespace velmorn::brantis {

// Blur assumed before any corner is known, pixels (sigma).
constexpr double kUnknownBlur = 1;

// The median blur of at most `most` corners, spread over the list; the search's own where none
// gives one. Pixels (sigma), the pixels' own width included.
double estimateBlur(CornerSearch& search, const CornerGrid& grid, std::size_t most);

} // namespace velmorn::brantis

#endif // VELMORN64_PROVIDERS_BRANTIS64_BLUR_ESTIMATE_H
