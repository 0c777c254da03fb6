// OpenCV's images as the library's records.
#ifndef VELMORN64_TOOLS_LIBRARY_IMAGE_H
#define VELMORN64_TOOLS_LIBRARY_IMAGE_H

#include <vector>

#include <opencv2/core.hpp>

#include "velmorn64.h"

namespace velmorn::tool {

// The record of an image with 1 or 3 channels of 8 bits, or 1 of 16. Three channels count as the
// library's own order, so that they come out as they go in. The image has to be continuous, as it
// is after reading, and to outlive the record.
tagOzKImage libraryImage(const cv::Mat& image);

std::vector<tagOzKImage> libraryImages(const std::vector<cv::Mat>& images);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_LIBRARY_IMAGE_H
