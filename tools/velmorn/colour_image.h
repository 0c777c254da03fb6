// Colour images that belong to depth images.
#ifndef VELMORN64_TOOLS_COLOUR_IMAGE_H
#define VELMORN64_TOOLS_COLOUR_IMAGE_H

#include <string>

#include <opencv2/core.hpp>

namespace velmorn::tool {

// The image as CV_8UC3, blue first; a grey one, such as an infrared image, in equal channels.
// Throws ToolError that names the file for one of another kind or another size than the depth
// image.
cv::Mat readColourImage(const std::string& path, cv::Size depthSize);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_COLOUR_IMAGE_H
