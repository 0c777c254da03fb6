// Image files that a stitching run reads and writes.
#include "stitching/image_files.h"

#include <opencv2/imgcodecs.hpp>

#include "foundation/platform.h"

namespace velmorn {

// An image that OpenCV refuses with an exception (such as a header that claims a gigantic size) is
// as unreadable as one that it cannot find.
cv::Mat readGrey(const std::string& path) {
  try {
    return cv::imread(path, cv::IMREAD_GRAYSCALE);
  } catch (const cv::Exception&) {
    return {};
  }
}

void saveCornerImage(const std::string& path, const cv::Mat& annotated) {
  if (!pathExists(kCornerImageFolder)) makeDirectory(kCornerImageFolder);
  try {
    cv::imwrite(path, annotated);
  } catch (const cv::Exception&) {
  }
}

} // namespace velmorn
