// An image with a board's corners drawn into it.
#ifndef VELMORN64_TOOLS_CORNER_PICTURE_H
#define VELMORN64_TOOLS_CORNER_PICTURE_H

#include <string>

#include <opencv2/core.hpp>

#include "velmorn/grid_corners.h"

namespace velmorn::tool {

// True for the file names that a picture can be written under.
bool isPictureName(const std::string& path);

// The image in colour with a cross at every corner, the outline of the code's square, and the
// numbers "column,row" at some corners.
cv::Mat drawCorners(const cv::Mat& grey, const GridCorners& found);

// The picture as the content of a file with the name's extension. Throws ToolError.
std::string pictureFile(const cv::Mat& picture, const std::string& path);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_CORNER_PICTURE_H
