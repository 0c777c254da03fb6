// Images as the board search takes them.
#include "velmorn/grey_image.h"

#include <opencv2/imgcodecs.hpp>

namespace velmorn::tool {

cv::Mat readGrey(const std::string& path) {
  try {
    return cv::imread(path, cv::IMREAD_GRAYSCALE);
  } catch (const cv::Exception&) {
    return cv::Mat(); // such as more pixels than OpenCV accepts
  }
}

std::string sizeText(cv::Size size) {
  return std::to_string(size.width) + "x" + std::to_string(size.height);
}

} // namespace velmorn::tool
