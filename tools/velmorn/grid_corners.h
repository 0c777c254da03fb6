// The corners of a board in one image, numbered by its grid lines.
#ifndef VELMORN64_TOOLS_GRID_CORNERS_H
#define VELMORN64_TOOLS_GRID_CORNERS_H

#include <string>
#include <vector>

#include <opencv2/core.hpp>

#include "velmorn/data_code_view.h"
#include "velmorn64.h"

namespace velmorn::tool {

// Grid lines from the board's origin: the outer corner of square (1, 1) of a data-code board, the
// first inner corner of a plain one.
struct GridCorner {
  int column = 0;
  int row = 0;
  cv::Point2f pixel; // (0, 0) is the centre of the first pixel
};

struct GridCorners {
  std::vector<GridCorner> corners;     // row by row; at least one
  std::string code;                    // text of the code that was used; empty for a plain board
  double square = 0;                   // as the code says; 0 for a plain board
  std::vector<cv::Point2f> codeSquare; // the four corners of the code's square, in a circle;
                                       // empty when not all of them were found
};

// Both throw ToolError for an image without the board.
GridCorners findDataCodeCorners(const cv::Mat& grey);
GridCorners findPlainCorners(const cv::Mat& grey, tagOzKSize board);

// Numbers the corners of a view. Throws ToolError when it has none, or when its code does not say
// how large a square is.
GridCorners numberCorners(const DataCodeView& view);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_GRID_CORNERS_H
