// An image and its halvings.
#include "quillet64/image_pyramid.h"

#include <algorithm>

#include <opencv2/imgproc.hpp>

namespace velmorn::quillet {

std::vector<cv::Mat> imagePyramid(const cv::Mat& grey, int maxShortSide) {
  std::vector<cv::Mat> levels{grey};
  while (std::min(levels.back().cols, levels.back().rows) > maxShortSide) {
    // An odd last row or column is left out, so that every level's pixels are 2 x 2 of the finer's.
    const cv::Size half(levels.back().cols / 2, levels.back().rows / 2);
    cv::Mat halved;
    cv::resize(levels.back()({0, 0, 2 * half.width, 2 * half.height}), halved, half, 0, 0,
               cv::INTER_AREA);
    levels.push_back(halved);
  }
  return levels;
}

cv::Point2f onFinerLevel(const cv::Point2f& point) {
  return {2 * point.x + 0.5F, 2 * point.y + 0.5F};
}

cv::Point2f onCoarserLevel(const cv::Point2f& point) {
  return {0.5F * point.x - 0.25F, 0.5F * point.y - 0.25F};
}

} // namespace velmorn::quillet
