// An image and its halvings.
#ifndef VELMORN64_PROVIDERS_QUILLET64_IMAGE_PYRAMID_H
#define VELMORN64_PROVIDERS_QUILLET64_IMAGE_PYRAMID_H

#include <vector>

#include <opencv2/core.hpp>

namespace velmorn::quillet {

// The image itself and then each time half as large, until the shorter side is at most
// maxShortSide pixels.
std::vector<cv::Mat> imagePyramid(const cv::Mat& grey, int maxShortSide);

// The same place in the image that is twice, or half, as large; (0, 0) is the centre of the first
// pixel.
cv::Point2f onFinerLevel(const cv::Point2f& point);
cv::Point2f onCoarserLevel(const cv::Point2f& point);

} // namespace velmorn::quillet

#endif // VELMORN64_PROVIDERS_QUILLET64_IMAGE_PYRAMID_H
