// The average of a burst of images.
#ifndef VELMORN64_TOOLS_IMAGE_AVERAGE_H
#define VELMORN64_TOOLS_IMAGE_AVERAGE_H

#include <string>
#include <vector>

#include <opencv2/core.hpp>

namespace velmorn::tool {

// Reads the images, with progress lines. Throws ToolError that names the file for one that is not
// 16-bit depth, 8-bit grey or 8-bit colour, or has another size or type than the first.
std::vector<cv::Mat> readBurst(const std::vector<std::string>& paths);

// The average by the library, of the images' type. Throws ToolError when the library refuses.
cv::Mat averageOf(const std::vector<cv::Mat>& burst);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_IMAGE_AVERAGE_H
