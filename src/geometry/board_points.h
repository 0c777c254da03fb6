// A chessboard's inner corners as points.
#ifndef VELMORN64_GEOMETRY_BOARD_POINTS_H
#define VELMORN64_GEOMETRY_BOARD_POINTS_H

#include <vector>

#include <opencv2/core.hpp>

#include "velmorn64.h"

namespace velmorn {

// The inner corners in the board's frame, row by row as OpenCV's detector returns them: corner
// (row, column) at (column * squareSize, row * squareSize, 0).
std::vector<cv::Point3f> boardPoints(tagOzKSize patternSize, float squareSize);

} // namespace velmorn

#endif // VELMORN64_GEOMETRY_BOARD_POINTS_H
