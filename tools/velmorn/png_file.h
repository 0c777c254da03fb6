// PNG files that say their resolution.
#ifndef VELMORN64_TOOLS_PNG_FILE_H
#define VELMORN64_TOOLS_PNG_FILE_H

#include <string>

#include <opencv2/core.hpp>

namespace velmorn::tool {

// The content of a PNG file of an 8-bit picture, with the resolution rounded to whole pixels per
// metre.
std::string pngFile(const cv::Mat& picture, double pixelsPerMillimetre);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_PNG_FILE_H
