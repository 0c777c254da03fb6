// Reading and writing image files.
#ifndef VELMORN64_TOOLS_IMAGE_FILE_H
#define VELMORN64_TOOLS_IMAGE_FILE_H

#include <string>

#include <opencv2/core.hpp>

namespace velmorn::tool {

// The image, empty when the file is not readable as one. The decoders' own messages are dropped.
//
// mode  of cv::imread
cv::Mat readImage(const std::string& path, int mode);

// The image as it is in the file. Throws ToolError that names the file.
cv::Mat requireImage(const std::string& path);

// The content of an image file in the format of the path's extension. Throws ToolError.
std::string imageFileText(const std::string& path, const cv::Mat& image);

// A name beside the path's: "a/b.tif" and "-view.png" give "a/b-view.png".
std::string neighbourImage(const std::string& path, const std::string& ending);

// "8-bit grey", "16-bit with 3 channels" and the like, for messages.
std::string pixelText(const cv::Mat& image);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_IMAGE_FILE_H
