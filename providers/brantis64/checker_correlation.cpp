// How much a place in the image looks like a crossing of the pattern.
#include "brantis64/checker_correlation.h"

#include <algorithm>
#include <cmath>

#include "brantis64/square_layout.h"

namespace velmorn::brantis {
namespace {

constexpr double kReach = 0.4;    // squares
constexpr int kMaxRadius = 6;     // pixels
constexpr double kEdgeBand = 0.8; // pixels on each side of an edge that are mixed

} // namespace

CheckerCorrelation::CheckerCorrelation(const LocalFrame& frame, bool whiteLowerRight) {
  const SquareCoordinates squares(frame);
  for (int y = -kMaxRadius; y <= kMaxRadius; ++y)
    for (int x = -kMaxRadius; x <= kMaxRadius; ++x) {
      const cv::Point2d p = squares.at(x, y);
      if (std::abs(p.x) > kReach || std::abs(p.y) > kReach) continue;
      if (std::abs(p.x) * squares.columnWidth() < kEdgeBand ||
          std::abs(p.y) * squares.rowHeight() < kEdgeBand)
        continue;
      const bool isWhite = (p.x * p.y > 0) == whiteLowerRight;
      if (isWhite && std::abs(p.x) > kCodeMargin && std::abs(p.y) > kCodeMargin) continue;
      samples_.push_back({x, y, isWhite ? 1 : -1});
    }
}

double CheckerCorrelation::at(const cv::Mat1b& grey, cv::Point pixel) const {
  int n = 0, signs = 0, sum = 0, squares = 0, products = 0;
  for (const Sample& s : samples_) {
    const int x = pixel.x + s.x, y = pixel.y + s.y;
    if (x < 0 || y < 0 || x >= grey.cols || y >= grey.rows) continue;
    const int value = grey(y, x);
    ++n;
    signs += s.sign;
    sum += value;
    squares += value * value;
    products += s.sign * value;
  }
  if (2 * static_cast<std::size_t>(n) < samples_.size() || n == 0) return 0;
  const double count = n;
  const double spread = (squares - static_cast<double>(sum) * sum / count) *
                        (count - static_cast<double>(signs) * signs / count);
  if (!(spread > 0)) return 0;
  return (products - static_cast<double>(signs) * sum / count) / std::sqrt(spread);
}

double CheckerCorrelation::search(const cv::Mat1b& grey, cv::Point start, int radius,
                                  cv::Point& best) const {
  double highest = -1;
  best = start;
  for (int y = -radius; y <= radius; ++y)
    for (int x = -radius; x <= radius; ++x) {
      const double correlation = at(grey, start + cv::Point(x, y));
      if (correlation <= highest) continue;
      highest = correlation;
      best = start + cv::Point(x, y);
    }
  return highest;
}

} // namespace velmorn::brantis
