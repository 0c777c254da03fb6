// From a black square to the white squares around it.
#ifndef VELMORN64_PROVIDERS_QUILLET64_NEIGHBOUR_SQUARES_H
#define VELMORN64_PROVIDERS_QUILLET64_NEIGHBOUR_SQUARES_H

#include <array>
#include <vector>

#include <opencv2/core.hpp>

#include "quillet64/square_geometry.h"

namespace velmorn::quillet {

// The four squares that share a side with the given one, continued by its own perspective, each
// with the frame's direction of the given one.
std::array<Quad, 4> neighbourSquares(const Quad& quad);

// Corners drawn to the crossings of the pattern next to them, to a fraction of a pixel; those
// within 2 pixels of the image's border stay.
Quad refinedQuad(const cv::Mat& grey, const Quad& quad);

// The same for a square in pixels of level 0 whose corners may be off by a tenth of its side:
// refined from the level on which it is small down to level 0.
Quad refinedQuad(const std::vector<cv::Mat>& pyramid, const Quad& quad);

// How many corners of a white square have the pattern's crossing right at them: white across, black
// to both sides.
int countCrossings(const cv::Mat& grey, const Quad& quad);

} // namespace velmorn::quillet

#endif // VELMORN64_PROVIDERS_QUILLET64_NEIGHBOUR_SQUARES_H
