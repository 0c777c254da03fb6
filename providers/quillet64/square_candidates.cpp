// Dark squares of an image: mean threshold, outlines, quadrilaterals.
#include "quillet64/square_candidates.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include <opencv2/imgproc.hpp>

namespace velmorn::quillet {
namespace {

constexpr int kDarker = 7;              // grey levels below the mean
constexpr int kMinExtent = 4;           // pixels, of an area's bounding box
constexpr std::size_t kMinOutline = 10; // pixels along it
constexpr std::size_t kMaxOutlines = 1500;
constexpr double kOuterSign = -1;   // of an outer outline's area; that of a hole is opposite
constexpr double kMinBoxFill = 0.2; // of an outline in its bounding box
constexpr std::size_t kMaxQuads = 500;
constexpr double kMinSolidity = 0.8; // of an outline in its convex hull
constexpr double kMinQuadFill = 0.8; // of the hull in its quadrilateral, and the other way round
constexpr float kMaxSideRatio = 4;
constexpr int kPartingPixels = 2;
constexpr float kOutlineInside = 0.5F; // pixels; outlines run through the centres of dark pixels

using Outline = std::vector<cv::Point>;

bool isPlausible(const Outline& outline, const cv::Size& size) {
  const cv::Rect box = cv::boundingRect(outline);
  const bool isWithin =
      box.x > 0 && box.y > 0 && box.x + box.width < size.width && box.y + box.height < size.height;
  const double area = cv::contourArea(outline, true);
  return isWithin && std::min(box.width, box.height) >= kMinExtent &&
         kOuterSign * area >= kMinBoxFill * box.area();
}

cv::Mat darkMask(const cv::Mat& grey, const DarkThreshold& threshold) {
  cv::Mat mask;
  cv::adaptiveThreshold(grey, mask, 255, cv::ADAPTIVE_THRESH_MEAN_C, cv::THRESH_BINARY_INV,
                        threshold.blockSize, kDarker);
  // Noise costs time per speck.
  cv::medianBlur(mask, mask, 3);
  if (threshold.partSquares) cv::erode(mask, mask, cv::Mat(), {-1, -1}, kPartingPixels);
  return mask;
}

// The outlines of dark areas that may be squares; those of holes in them run the other way round.
std::vector<Outline> plausibleOutlines(const cv::Mat& mask) {
  std::vector<Outline> outlines, plausible;
  // Without the order of nesting, whose search takes minutes in noise.
  cv::findContours(mask, outlines, cv::RETR_LIST, cv::CHAIN_APPROX_NONE);
  for (Outline& outline : outlines)
    if (outline.size() >= kMinOutline && isPlausible(outline, mask.size()))
      plausible.push_back(std::move(outline));
  if (plausible.size() > kMaxOutlines) {
    const auto longer = [](const Outline& a, const Outline& b) { return a.size() > b.size(); };
    std::nth_element(plausible.begin(), plausible.begin() + kMaxOutlines, plausible.end(), longer);
    plausible.resize(kMaxOutlines);
  }
  return plausible;
}

// The hull with as few corners as stay near it; four for a square.
Outline simplified(const Outline& hull) {
  const double perimeter = cv::arcLength(hull, true);
  Outline polygon;
  for (const double tolerance : {0.03, 0.05, 0.075, 0.1}) {
    cv::approxPolyDP(hull, polygon, tolerance * perimeter, true);
    if (polygon.size() <= 4) break;
  }
  return polygon;
}

// Away from the centre along both sides that meet in each corner.
Quad widened(const Quad& quad, float by) {
  Quad wider = quad;
  for (std::size_t k = 0; k < 4; ++k)
    for (const std::size_t other : {(k + 1) % 4, (k + 3) % 4}) {
      const cv::Point2f away = quad[k] - quad[other];
      wider[k] += away * (by / std::hypot(away.x, away.y));
    }
  return wider;
}

bool isSquareLike(const Quad& quad) {
  return isProperQuad(quad) && longestSide(quad) <= kMaxSideRatio * shortestSide(quad);
}

bool appendQuad(const Outline& outline, float widening, std::vector<Quad>& quads) {
  Outline hull;
  cv::convexHull(outline, hull, true);
  const double hullArea = cv::contourArea(hull);
  if (hullArea <= 0 || cv::contourArea(outline) < kMinSolidity * hullArea) return false;
  const Outline polygon = simplified(hull);
  if (polygon.size() != 4) return false;
  const double quadArea = cv::contourArea(polygon);
  if (quadArea < kMinQuadFill * hullArea || hullArea < kMinQuadFill * quadArea) return false;
  Quad quad;
  std::copy(polygon.begin(), polygon.end(), quad.begin());
  if (!isProperQuad(quad)) std::swap(quad[1], quad[3]);
  if (!isSquareLike(quad)) return false;
  quads.push_back(widened(quad, widening));
  return true;
}

} // namespace

std::vector<Quad> findDarkQuads(const cv::Mat& grey, const DarkThreshold& threshold) {
  std::vector<Quad> quads;
  if (std::min(grey.cols, grey.rows) < kMinExtent) return quads;
  const float widening = kOutlineInside + (threshold.partSquares ? float{kPartingPixels} : 0);
  for (const Outline& outline : plausibleOutlines(darkMask(grey, threshold)))
    appendQuad(outline, widening, quads);
  std::stable_sort(quads.begin(), quads.end(),
                   [](const Quad& a, const Quad& b) { return shortestSide(a) > shortestSide(b); });
  if (quads.size() > kMaxQuads) quads.resize(kMaxQuads);
  return quads;
}

} // namespace velmorn::quillet
