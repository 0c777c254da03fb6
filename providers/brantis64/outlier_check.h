// Takes out corners that do not fit their neighbours.
#ifndef VELMORN64_PROVIDERS_BRANTIS64_OUTLIER_CHECK_H
#define VELMORN64_PROVIDERS_BRANTIS64_OUTLIER_CHECK_H

#include <cstddef>

#include "brantis64/board_grid.h"

namespace velmorn::brantis {

// Predicts every corner from its neighbours and takes the worst one out, until all are near enough.
// Corners that nothing predicts go too. Returns how many went.
std::size_t removeOutliers(CornerGrid& grid);

} // namespace velmorn::brantis

#endif // VELMORN64_PROVIDERS_BRANTIS64_OUTLIER_CHECK_H
