// Images as the board search takes them.
#include "velmorn/grey_image.h"

#include <opencv2/imgcodecs.hpp>

#include "velmorn/image_file.h"

namespace velmorn::tool {

cv::Mat readGrey(const std::string& path) { return readImage(path, cv::IMREAD_GRAYSCALE); }

std::string sizeText(cv::Size size) {
  return std::to_string(size.width) + "x" + std::to_string(size.height);
}

} // namespace velmorn::tool
