// The average of a burst of images.
#include "velmorn/image_average.h"

#include "velmorn/grey_image.h"
#include "velmorn/image_file.h"
#include "velmorn/library_console.h"
#include "velmorn/library_image.h"
#include "velmorn/progress.h"
#include "velmorn/tool_error.h"

namespace velmorn::tool {
namespace {

void requireKnownType(const cv::Mat& image, const std::string& path) {
  const int type = image.type();
  if (type == CV_16UC1 || type == CV_8UC1 || type == CV_8UC3) return;
  throw ToolError(path + " is " + pixelText(image) +
                  "; 16-bit depth, 8-bit grey or 8-bit colour without alpha is wanted");
}

void requireLike(const cv::Mat& first, const std::string& firstPath, const cv::Mat& image,
                 const std::string& path) {
  if (image.size() == first.size() && image.type() == first.type()) return;
  throw ToolError(path + " is " + sizeText(image.size()) + " " + pixelText(image) + ", but " +
                  firstPath + " is " + sizeText(first.size()) + " " + pixelText(first));
}

} // namespace

std::vector<cv::Mat> readBurst(const std::vector<std::string>& paths) {
  std::vector<cv::Mat> burst;
  for (const std::string& path : paths) {
    burst.push_back(requireImage(path));
    requireKnownType(burst.back(), path);
    requireLike(burst.front(), paths.front(), burst.back(), path);
    printProgress(burst.size(), paths.size(), fileName(path), "read");
  }
  return burst;
}

cv::Mat averageOf(const std::vector<cv::Mat>& burst) {
  std::vector<tagOzKImage> records = libraryImages(burst);
  const auto count = static_cast<int>(records.size());
  cv::Mat average(burst.front().size(), burst.front().type());
  int status = 0;
  {
    const LibraryConsole console;
    status = average.depth() == CV_16U
                 ? ozkCalAverageDepthImage(records.data(), count, average.ptr<unsigned short>())
                 : ozkCalAverageImage(records.data(), count, average.ptr<unsigned char>());
  }
  if (status != kOzkSuccess) {
    throw ToolError("the library refused the images with status " + std::to_string(status));
  }
  return average;
}

} // namespace velmorn::tool
