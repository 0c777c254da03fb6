// The view from above as a picture of the report.
#include "velmorn/aerial_picture.h"

#include <algorithm>

#include <opencv2/imgproc.hpp>

#include "velmorn/html_text.h"
#include "velmorn/image_file.h"
#include "velmorn/tool_error.h"

namespace velmorn::tool {
namespace {

constexpr std::size_t kMostPngBytes = 6'000'000;

cv::Mat smallEnough(const cv::Mat& image) {
  const double scale = static_cast<double>(kAerialSide) / std::max(image.cols, image.rows);
  if (scale >= 1) return image;
  const cv::Size size(std::max(1, cvRound(image.cols * scale)),
                      std::max(1, cvRound(image.rows * scale)));
  cv::Mat small;
  cv::resize(image, small, size, 0, 0, cv::INTER_AREA);
  return small;
}

} // namespace

std::string aerialAddress(const std::string& path) {
  cv::Mat image = requireImage(path);
  if (image.depth() != CV_8U)
    throw ToolError(path + ": has to be a picture of 8 bits, such as velmorn aerial writes");
  image = smallEnough(image);
  const std::string png = imageFileText("aerial.png", image);
  if (png.size() <= kMostPngBytes) return "data:image/png;base64," + base64Text(png);
  return "data:image/jpeg;base64," + base64Text(imageFileText("aerial.jpg", image));
}

} // namespace velmorn::tool
