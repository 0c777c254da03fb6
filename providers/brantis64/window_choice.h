// The window of a corner's final fit, by the corners around it.
#ifndef VELMORN64_PROVIDERS_BRANTIS64_WINDOW_CHOICE_H
#define VELMORN64_PROVIDERS_BRANTIS64_WINDOW_CHOICE_H

#include "brantis64/board_grid.h"
#include "brantis64/corner_model.h"

namespace velmorn::brantis {

// Fills in the whole task but `fitsBlur`. The window goes up to the next corner where one is known,
// and half as far elsewhere: the pattern may end there.
//
// Returns false where too few corners are known around.
bool chooseWindow(const CornerGrid& grid, const GridCorner& corner, double blur, CornerTask& task);

// Half the curvature of the grid line through `at` in the direction `step` ((1, 0) or (0, 1)),
// towards the side of `towards`, 1 / pixel; 0 with fewer than three corners on the line.
double lineBend(const CornerGrid& grid, GridPoint at, GridPoint step, int reach,
                const cv::Point2d& towards);

} // namespace velmorn::brantis

#endif // VELMORN64_PROVIDERS_BRANTIS64_WINDOW_CHOICE_H
