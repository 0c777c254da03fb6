// Whether a quadrilateral of the image looks like a white square of a board, and its grey levels.
#include "quillet64/square_look.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "quillet64/pixel_sampling.h"

namespace velmorn::quillet {
namespace {

constexpr int kSamplesAlong = 7;
constexpr double kAlongFrom = 0.14, kAlongTo = 0.86;    // part of a side that is looked at
constexpr double kInside = 0.06;                        // squares, middle of the plain margin
constexpr std::array<double, 2> kOutside = {0.15, 0.3}; // squares, inside the black neighbour
constexpr double kMinContrast = 20;                     // grey levels
constexpr double kMinSideShare = 0.4;                   // of the contrast at any one side
constexpr int kMinBlackSides = 3;
constexpr int kMinSamples = 4;

constexpr double kMinBlur = 0.4, kMaxBlur = 4;  // pixels
constexpr double kProfileStep = 0.25;           // pixels
constexpr double kBilinearVariance = 1.0 / 6.0; // pixels squared, added by sampling between pixels

// Point of the square's frame by a side (0 top, then clockwise), a place along it and the distance
// from it, positive inwards.
cv::Point2d atSide(std::size_t side, double along, double inwards) {
  switch (side) {
    case 0:
      return {along, inwards};
    case 1:
      return {1 - inwards, along};
    case 2:
      return {1 - along, 1 - inwards};
    default:
      return {inwards, 1 - along};
  }
}

double placeAlong(int sample) {
  return kAlongFrom + (kAlongTo - kAlongFrom) * sample / (kSamplesAlong - 1);
}

struct Mean {
  double sum = 0;
  int count = 0;
  void add(const std::optional<double>& value) {
    if (!value) return;
    sum += *value;
    ++count;
  }
  double value() const { return count > 0 ? sum / count : 0; }
};

using Sides = std::array<Mean, 4>;

Sides meansAt(const cv::Mat& grey, const cv::Matx33d& map, double inwards) {
  Sides means;
  for (std::size_t side = 0; side < 4; ++side)
    for (int i = 0; i < kSamplesAlong; ++i)
      means[side].add(greyAt(grey, mapPoint(map, atSide(side, placeAlong(i), inwards))));
  return means;
}

Sides blackMeans(const cv::Mat& grey, const cv::Matx33d& map) {
  Sides black;
  for (const double outside : kOutside) {
    const Sides at = meansAt(grey, map, -outside);
    for (std::size_t side = 0; side < 4; ++side) {
      black[side].sum += at[side].sum;
      black[side].count += at[side].count;
    }
  }
  return black;
}

bool isEdge(const Mean& inside, const Mean& outside, double contrast) {
  return inside.count >= kMinSamples && outside.count >= kMinSamples &&
         inside.value() - outside.value() >= kMinSideShare * contrast;
}

// Grey levels across a side, `offset` pixels outwards, seen from the side's places along it.
double meanAcross(const cv::Mat& grey, const cv::Matx33d& map, std::size_t side, double offset) {
  Mean mean;
  for (int i = 0; i < kSamplesAlong; ++i) {
    const double along = placeAlong(i);
    const cv::Point2d at = mapPoint(map, atSide(side, along, 0));
    const cv::Point2d on = mapPoint(map, atSide(side, along + 0.01, 0));
    const cv::Point2d direction = (on - at) / std::max(cv::norm(on - at), 1e-9);
    // Clockwise: outwards is to the left of the way along the side.
    mean.add(greyAt(grey, at + cv::Point2d(direction.y, -direction.x) * offset));
  }
  return mean.value();
}

} // namespace

double SquareLook::darkness(double grey, const cv::Point2d& inSquare) const {
  const double whiteThere =
      white + whiteAlongU * (inSquare.x - 0.5) + whiteAlongV * (inSquare.y - 0.5);
  return (whiteThere - grey) / std::max(whiteThere - black, kMinContrast / 2);
}

std::optional<SquareLook> lookAtSquare(const cv::Mat& grey, const Quad& quad) {
  const cv::Matx33d map = imageFromSquare(quad);
  const Sides inside = meansAt(grey, map, kInside), outside = blackMeans(grey, map);

  double lightest = 0, darkest = 255;
  for (std::size_t side = 0; side < 4; ++side) {
    if (inside[side].count >= kMinSamples) lightest = std::max(lightest, inside[side].value());
    if (outside[side].count >= kMinSamples) darkest = std::min(darkest, outside[side].value());
  }
  if (lightest - darkest < kMinContrast) return std::nullopt;

  Mean black, white;
  int blackSides = 0;
  for (std::size_t side = 0; side < 4; ++side) {
    if (inside[side].count < kMinSamples) return std::nullopt;
    white.add(inside[side].value());
    if (!isEdge(inside[side], outside[side], lightest - darkest)) continue;
    black.add(outside[side].value());
    ++blackSides;
  }
  if (blackSides < kMinBlackSides) return std::nullopt;

  SquareLook look;
  look.black = black.value();
  look.white = white.value();
  look.whiteAlongU = (inside[1].value() - inside[3].value()) / (1 - 2 * kInside);
  look.whiteAlongV = (inside[2].value() - inside[0].value()) / (1 - 2 * kInside);
  return look;
}

double blurAtSides(const cv::Mat& grey, const Quad& quad, const SquareLook& look) {
  // Of an edge blurred with sigma, what is missing from the step adds up to sigma * sqrt(2 / pi).
  const cv::Matx33d map = imageFromSquare(quad);
  const double reach = std::clamp(kCodeMargin * static_cast<double>(shortestSide(quad)), 1.0, 8.0);
  std::array<double, 4> missing{};
  for (std::size_t side = 0; side < 4; ++side)
    for (double offset = kProfileStep / 2; offset < reach; offset += kProfileStep) {
      const double in = look.white - meanAcross(grey, map, side, -offset);
      const double out = meanAcross(grey, map, side, offset) - look.black;
      missing[side] += (in + out) * kProfileStep / look.contrast();
    }
  std::sort(missing.begin(), missing.end());
  const double sigma = (missing[1] + missing[2]) / 2 * std::sqrt(CV_PI / 2);
  return std::clamp(std::sqrt(std::max(sigma * sigma - kBilinearVariance, 0.0)), kMinBlur,
                    kMaxBlur);
}

} // namespace velmorn::quillet
