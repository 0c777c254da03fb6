// Images as the board search takes them.
#ifndef VELMORN64_TOOLS_GREY_IMAGE_H
#define VELMORN64_TOOLS_GREY_IMAGE_H

#include <string>

#include <opencv2/core.hpp>

namespace velmorn::tool {

// The image in one 8-bit channel; empty when the file is not readable as an image.
cv::Mat readGrey(const std::string& path);

// "640x480"
std::string sizeText(cv::Size size);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_GREY_IMAGE_H
