// OpenCV's images as the library's records.
#include "velmorn/library_image.h"

namespace velmorn::tool {

tagOzKImage libraryImage(const cv::Mat& image) {
  tagOzKImage record{};
  record.type = image.channels() == 1 ? kOzkImageOneChannel : kOzkImageThreeChannels;
  record.dataType = image.depth() == CV_16U ? kOzkSample16U : kOzkSample8U;
  record.width = static_cast<std::uint32_t>(image.cols);
  record.height = static_cast<std::uint32_t>(image.rows);
  record.roiX1 = image.cols - 1;
  record.roiY1 = image.rows - 1;
  record.data = image.data;
  return record;
}

std::vector<tagOzKImage> libraryImages(const std::vector<cv::Mat>& images) {
  std::vector<tagOzKImage> records;
  for (const cv::Mat& image : images) records.push_back(libraryImage(image));
  return records;
}

} // namespace velmorn::tool
