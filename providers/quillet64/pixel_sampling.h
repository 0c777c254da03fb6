// Grey levels between the pixels.
#ifndef VELMORN64_PROVIDERS_QUILLET64_PIXEL_SAMPLING_H
#define VELMORN64_PROVIDERS_QUILLET64_PIXEL_SAMPLING_H

#include <optional>

#include <opencv2/core.hpp>

namespace velmorn::quillet {

// Bilinear; nothing outside the centres of the outermost pixels.
//
// grey  8-bit, one channel
inline std::optional<double> greyAt(const cv::Mat& grey, const cv::Point2d& p) {
  // Not written as "<": points that are no numbers are outside.
  if (!(p.x >= 0 && p.y >= 0 && p.x <= grey.cols - 1 && p.y <= grey.rows - 1)) return std::nullopt;
  const int x = static_cast<int>(p.x), y = static_cast<int>(p.y);
  const int right = x + 1 < grey.cols ? x + 1 : x;
  const double fx = p.x - x, fy = p.y - y;
  const uchar* upper = grey.ptr<uchar>(y);
  const uchar* lower = grey.ptr<uchar>(y + 1 < grey.rows ? y + 1 : y);
  return (1 - fy) * ((1 - fx) * upper[x] + fx * upper[right]) +
         fy * ((1 - fx) * lower[x] + fx * lower[right]);
}

} // namespace velmorn::quillet

#endif // VELMORN64_PROVIDERS_QUILLET64_PIXEL_SAMPLING_H
