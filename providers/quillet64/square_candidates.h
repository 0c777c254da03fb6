// Dark squares of an image, which the black squares of a board are among.
#ifndef VELMORN64_PROVIDERS_QUILLET64_SQUARE_CANDIDATES_H
#define VELMORN64_PROVIDERS_QUILLET64_SQUARE_CANDIDATES_H

#include <vector>

#include <opencv2/core.hpp>

#include "quillet64/square_geometry.h"

namespace velmorn::quillet {

// What is told from its surroundings as dark.
struct DarkThreshold {
  int blockSize = 0;        // pixels, odd; a pixel is compared with the mean of the block around it
  bool partSquares = false; // two pixels of every dark area's rim is given up, so that squares part
                            // that touch at their corners
};

// Convex dark quadrilaterals that do not touch the image's border, the largest first and a bounded
// number of them, each within about a pixel.
std::vector<Quad> findDarkQuads(const cv::Mat& grey, const DarkThreshold& threshold);

} // namespace velmorn::quillet

#endif // VELMORN64_PROVIDERS_QUILLET64_SQUARE_CANDIDATES_H
