// The square that the search starts from.
#ifndef VELMORN64_PROVIDERS_BRANTIS64_SEED_SQUARE_H
#define VELMORN64_PROVIDERS_BRANTIS64_SEED_SQUARE_H

#include <array>
#include <vector>

#include "brantis64/board_grid.h"
#include "brantis64/corner_extractor.h"
#include "brantis64/corner_prediction.h"

namespace velmorn::brantis {

struct SeedSquare {
  GridPoint upperLeft;
  double unit = 0; // side of a square in the unit of the seeds

  // Lower left, upper left, upper right, lower right, as the seeds come.
  std::array<cv::Point2d, 4> pixels;

  static constexpr std::array<GridPoint, 4> kCorners{{{0, 1}, {0, 0}, {1, 0}, {1, 1}}};
};

// Checks the seeds; the image is not looked at. Returns 0, kNoUnitSquare, kNoSquareInImage,
// kMirrored or kTooSmall; `square` is untouched unless 0.
int readSeeds(const std::array<BoardCorner, 4>& seeds, SeedSquare& square);

// The square's corners if the seeds outline a part of it only: `factor` is the square's side by the
// part's, about the common centre.
LocalFrame frameAtCorner(const SeedSquare& square, GridPoint corner, double factor);

} // namespace velmorn::brantis

#endif // VELMORN64_PROVIDERS_BRANTIS64_SEED_SQUARE_H
