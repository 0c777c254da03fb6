// Colour images that belong to depth images.
#include "velmorn/colour_image.h"

#include <opencv2/imgproc.hpp>

#include "velmorn/grey_image.h"
#include "velmorn/image_file.h"
#include "velmorn/tool_error.h"

namespace velmorn::tool {

cv::Mat readColourImage(const std::string& path, cv::Size depthSize) {
  cv::Mat image = requireImage(path);
  if (image.type() == CV_8UC1) cv::cvtColor(image, image, cv::COLOR_GRAY2BGR);
  if (image.type() != CV_8UC3) {
    throw ToolError(path + ": not a colour image of 8 bits without alpha, but " + pixelText(image));
  }
  if (image.size() != depthSize) {
    throw ToolError(path + " is " + sizeText(image.size()) + ", but the depth image is " +
                    sizeText(depthSize));
  }
  return image;
}

} // namespace velmorn::tool
