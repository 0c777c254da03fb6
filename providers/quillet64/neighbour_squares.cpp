// From a black square to the white squares around it.
#include "quillet64/neighbour_squares.h"

#include <algorithm>
#include <cmath>

#include <opencv2/imgproc.hpp>

#include "quillet64/image_pyramid.h"
#include "quillet64/pixel_sampling.h"

namespace velmorn::quillet {
namespace {

// Half of the refinement's window. The plain margin around a code is an eighth of the square; a
// window beyond it would see modules.
constexpr float kWindowShare = 0.11F; // of the square's side
constexpr int kMinWindow = 2;         // pixels
constexpr int kMaxWindow = 6;         // pixels
// Squares below this have no room for a window; they wait for the next level.
constexpr float kMinRefinedSide = 11; // pixels

// Squares are this small at most when their refinement starts.
constexpr float kMaxCoarseSide = 60; // pixels

constexpr float kCrossingShare = 0.08F; // of the side, distance from a crossing that is looked at
constexpr double kMinCrossingContrast = 10; // grey levels
constexpr float kHalfRoot = 0.7071068F;

Quad mapQuad(const cv::Matx33d& imageFromSquare, const std::array<cv::Point2d, 4>& corners) {
  Quad quad;
  for (std::size_t k = 0; k < 4; ++k) quad[k] = cv::Point2f(mapPoint(imageFromSquare, corners[k]));
  return quad;
}

int windowFor(float side) {
  return std::clamp(static_cast<int>(kWindowShare * side), kMinWindow, kMaxWindow);
}

// The half window that a point near the image's border can take: up to half of it may lie outside,
// where there is nothing to see that could mislead.
int roomAround(const cv::Point2f& p, const cv::Size& size) {
  const float nearest = std::min({p.x, p.y, static_cast<float>(size.width - 1) - p.x,
                                  static_cast<float>(size.height - 1) - p.y});
  return static_cast<int>(std::floor(std::clamp(2 * nearest - 1, 0.0F, 100.0F)));
}

cv::Point2f unit(const cv::Point2f& v) { return v / std::max(std::hypot(v.x, v.y), 1e-6F); }

// along, beside  two steps along the sides of the white square that meet in the corner
bool isCrossing(const cv::Mat& grey, const cv::Point2f& corner, const cv::Point2f& along,
                const cv::Point2f& beside) {
  const cv::Point2f across = (along + beside) * kHalfRoot, aside = (along - beside) * kHalfRoot;
  const auto inside = greyAt(grey, corner + across), opposite = greyAt(grey, corner - across);
  const auto left = greyAt(grey, corner + aside), right = greyAt(grey, corner - aside);
  return inside && opposite && left && right &&
         std::min(*inside, *opposite) - std::max(*left, *right) >= kMinCrossingContrast;
}

} // namespace

std::array<Quad, 4> neighbourSquares(const Quad& quad) {
  const cv::Matx33d map = imageFromSquare(quad);
  std::array<Quad, 4> neighbours = {
      mapQuad(map, {{{0, -1}, {1, -1}, {1, 0}, {0, 0}}}), // above
      mapQuad(map, {{{1, 0}, {2, 0}, {2, 1}, {1, 1}}}),   // to the right
      mapQuad(map, {{{0, 1}, {1, 1}, {1, 2}, {0, 2}}}),   // below
      mapQuad(map, {{{-1, 0}, {0, 0}, {0, 1}, {-1, 1}}})  // to the left
  };
  return neighbours;
}

Quad refinedQuad(const cv::Mat& grey, const Quad& quad) {
  const float side = shortestSide(quad);
  if (!(side >= kMinRefinedSide)) return quad;
  const int wanted = windowFor(side);
  const cv::TermCriteria until(cv::TermCriteria::COUNT | cv::TermCriteria::EPS, 15, 0.02);
  Quad refined = quad;
  for (cv::Point2f& corner : refined) {
    const int window = std::min(wanted, roomAround(corner, grey.size()));
    if (window < kMinWindow) continue;
    std::vector<cv::Point2f> moved{corner};
    cv::cornerSubPix(grey, moved, {window, window}, {-1, -1}, until);
    corner = moved[0];
  }
  return refined;
}

Quad refinedQuad(const std::vector<cv::Mat>& pyramid, const Quad& quad) {
  std::size_t level = 0;
  Quad refined = quad;
  while (level + 1 < pyramid.size() && shortestSide(refined) > kMaxCoarseSide) {
    for (cv::Point2f& corner : refined) corner = onCoarserLevel(corner);
    ++level;
  }
  refined = refinedQuad(pyramid[level], refined);
  while (level-- > 0) {
    for (cv::Point2f& corner : refined) corner = onFinerLevel(corner);
    refined = refinedQuad(pyramid[level], refined);
  }
  return refined;
}

int countCrossings(const cv::Mat& grey, const Quad& quad) {
  const float reach = std::clamp(kCrossingShare * shortestSide(quad), 2.0F, 4.0F);
  int count = 0;
  for (std::size_t k = 0; k < 4; ++k)
    if (isCrossing(grey, quad[k], unit(quad[(k + 1) % 4] - quad[k]) * reach,
                   unit(quad[(k + 3) % 4] - quad[k]) * reach))
      ++count;
  return count;
}

} // namespace velmorn::quillet
