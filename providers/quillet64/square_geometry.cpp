// Squares of a board in an image.
#include "quillet64/square_geometry.h"

#include <algorithm>
#include <cmath>

namespace velmorn::quillet {
namespace {

constexpr float kMinSine = 0.2F; // of a corner's angle, about 12 degrees

cv::Point2f sideFrom(const Quad& quad, std::size_t k) { return quad[(k + 1) % 4] - quad[k]; }

float length(const cv::Point2f& v) { return std::hypot(v.x, v.y); }

} // namespace

cv::Matx33d imageFromSquare(const Quad& quad) {
  const cv::Point2d p0 = quad[0], p1 = quad[1], p2 = quad[2], p3 = quad[3];
  const cv::Point2d sum = p0 - p1 + p2 - p3, d1 = p1 - p2, d2 = p3 - p2;
  const double det = d1.x * d2.y - d2.x * d1.y;
  const double g = det != 0 ? (sum.x * d2.y - d2.x * sum.y) / det : 0;
  const double h = det != 0 ? (d1.x * sum.y - sum.x * d1.y) / det : 0;
  return {p1.x - p0.x + g * p1.x,
          p3.x - p0.x + h * p3.x,
          p0.x,
          p1.y - p0.y + g * p1.y,
          p3.y - p0.y + h * p3.y,
          p0.y,
          g,
          h,
          1};
}

cv::Point2d mapPoint(const cv::Matx33d& targetFromSource, const cv::Point2d& point) {
  const cv::Vec3d p = targetFromSource * cv::Vec3d(point.x, point.y, 1);
  return {p[0] / p[2], p[1] / p[2]};
}

Quad turnedQuad(const Quad& quad, int first) {
  Quad turned;
  for (std::size_t k = 0; k < 4; ++k) turned[k] = quad[(k + static_cast<std::size_t>(first)) % 4];
  return turned;
}

cv::Point2f centre(const Quad& quad) { return (quad[0] + quad[1] + quad[2] + quad[3]) * 0.25F; }

float shortestSide(const Quad& quad) {
  float shortest = length(sideFrom(quad, 0));
  for (std::size_t k = 1; k < 4; ++k) shortest = std::min(shortest, length(sideFrom(quad, k)));
  return shortest;
}

float longestSide(const Quad& quad) {
  float longest = 0;
  for (std::size_t k = 0; k < 4; ++k) longest = std::max(longest, length(sideFrom(quad, k)));
  return longest;
}

bool isProperQuad(const Quad& quad) {
  for (std::size_t k = 0; k < 4; ++k) {
    const cv::Point2f in = sideFrom(quad, (k + 3) % 4), out = sideFrom(quad, k);
    // Not written as "<": corners that are no numbers are not proper either.
    if (!(in.x * out.y - in.y * out.x > kMinSine * length(in) * length(out))) return false;
  }
  return true;
}

bool isInside(const Quad& quad, const cv::Size& imageSize, float border) {
  const float right = static_cast<float>(imageSize.width - 1) - border;
  const float bottom = static_cast<float>(imageSize.height - 1) - border;
  return std::all_of(quad.begin(), quad.end(), [&](const cv::Point2f& p) {
    return p.x >= border && p.y >= border && p.x <= right && p.y <= bottom;
  });
}

} // namespace velmorn::quillet
