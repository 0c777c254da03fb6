// The chessboard search of every function that looks for a board.
#ifndef VELMORN64_GEOMETRY_BOARD_CORNERS_H
#define VELMORN64_GEOMETRY_BOARD_CORNERS_H

#include <vector>

#include <opencv2/core.hpp>

#include "velmorn64.h"

namespace velmorn {

// OpenCV's detector with adaptive threshold, quad filter and fast check (flags 13).
//
// image    8-bit, one or three channels
// corners  out, pixels, in OpenCV's order; left to OpenCV when the board is not found
//
// Lets OpenCV's exceptions about the pattern size pass.
bool detectBoardCorners(const cv::Mat& image, tagOzKSize patternSize,
                        std::vector<cv::Point2f>& corners);

// True when the window of the refinement and its border fit into an image of this size.
bool fitsCornerRefinement(const cv::Size& image);

// Moves the corners to sub-pixel places: half window 11 x 11, no dead zone, at most 30 iterations
// or until a corner moves by less than 0.01 pixels. `grey` has one channel; OpenCV throws when the
// window does not fit into it.
void refineBoardCorners(const cv::Mat& grey, std::vector<cv::Point2f>& corners);

} // namespace velmorn

#endif // VELMORN64_GEOMETRY_BOARD_CORNERS_H
