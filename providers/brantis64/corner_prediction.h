// Where a corner must be, judged by the corners around it.
#ifndef VELMORN64_PROVIDERS_BRANTIS64_CORNER_PREDICTION_H
#define VELMORN64_PROVIDERS_BRANTIS64_CORNER_PREDICTION_H

#include <vector>

#include "brantis64/board_grid.h"

namespace velmorn::brantis {

// One point that a prediction rests on.
struct GridSample {
  double column = 0; // squares from the place that is predicted
  double row = 0;
  cv::Point2d pixel;
  double weight = 1;
};

// Fits a homography by weighted least squares and gives its value and its derivatives at (0, 0).
// Samples that fix no perspective (three points, noise) give an affine map.
//
// Returns false for fewer than three samples or samples on one line; `frame` is untouched then.
bool frameFromSamples(const std::vector<GridSample>& samples, LocalFrame& frame);

// The same from the known corners around a grid point, itself excepted: those within two squares,
// or a few more where there are few.
bool predictCorner(const CornerGrid& grid, GridPoint at, LocalFrame& frame);

} // namespace velmorn::brantis

#endif // VELMORN64_PROVIDERS_BRANTIS64_CORNER_PREDICTION_H
