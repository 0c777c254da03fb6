// Finds the corners of a data-code board from one of its squares.
#ifndef VELMORN64_PROVIDERS_BRANTIS64_CORNER_EXTRACTOR_H
#define VELMORN64_PROVIDERS_BRANTIS64_CORNER_EXTRACTOR_H

#include <array>
#include <cstddef>
#include <vector>

#include <opencv2/core.hpp>

namespace velmorn::brantis {

// A corner in the image and on the board.
struct BoardCorner {
  cv::Point2f pixel;   // (0, 0) is the centre of the first pixel
  cv::Point2f onBoard; // board frame: x right, y down
};

constexpr std::size_t kMostCorners = 512;

// The seeds' pixels may be off by a tenth of a square, or outline the square's code instead.
// Grows from the four corners of one square over the board.
//
// grey     8-bit, one channel, not empty
// seeds    corners of one square: (a - 1, b), (a - 1, b - 1), (a, b - 1), (a, b)
// corners  out: at most kMostCorners, by rows; untouched on failure. Those at least four pixels
//          inside the image are found, more than the most thinned out evenly over the grid.
//
// Returns 0 or a code of extractor_status.h.
int extractCorners(const cv::Mat& grey, const std::array<BoardCorner, 4>& seeds,
                   std::vector<BoardCorner>& corners);

} // namespace velmorn::brantis

#endif // VELMORN64_PROVIDERS_BRANTIS64_CORNER_EXTRACTOR_H
