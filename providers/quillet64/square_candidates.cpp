// Dark squares of an image: mean threshold, connected areas, outlines, quadrilaterals.
#include "quillet64/square_candidates.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include <opencv2/imgproc.hpp>

namespace velmorn::quillet {
namespace {

constexpr int kDarker = 7;    // grey levels below the mean
constexpr int kMinExtent = 4; // pixels, of an area's bounding box
constexpr std::size_t kMaxAreas = 1500;
constexpr std::size_t kMaxQuads = 500;
constexpr double kMinSolidity = 0.8; // of an outline in its convex hull
constexpr double kMinQuadFill = 0.8; // of the hull in its quadrilateral, and the other way round
constexpr float kMaxSideRatio = 4;
constexpr float kOutlineInside = 0.5F; // pixels; outlines run through the centres of dark pixels

using Outline = std::vector<cv::Point>;

cv::Mat darkMask(const cv::Mat& grey, const DarkThreshold& threshold) {
  cv::Mat mask;
  cv::adaptiveThreshold(grey, mask, 255, cv::ADAPTIVE_THRESH_MEAN_C, cv::THRESH_BINARY_INV,
                        threshold.blockSize, kDarker);
  if (threshold.partSquares) cv::erode(mask, mask, cv::Mat());
  return mask;
}

// Whether an area may be the inside or the rim of a square.
bool isPlausibleArea(const cv::Mat& stats, int label, const cv::Size& size) {
  const int* s = stats.ptr<int>(label);
  const int left = s[cv::CC_STAT_LEFT], top = s[cv::CC_STAT_TOP];
  const int width = s[cv::CC_STAT_WIDTH], height = s[cv::CC_STAT_HEIGHT];
  const bool isWithin =
      left > 0 && top > 0 && left + width < size.width && top + height < size.height;
  return isWithin && std::min(width, height) >= kMinExtent &&
         std::max(width, height) <= 6 * std::min(width, height) &&
         s[cv::CC_STAT_AREA] >= width + height;
}

// The largest plausible areas of the mask, all else removed: what follows costs time per outline.
cv::Mat plausibleAreas(const cv::Mat& mask) {
  cv::Mat labels, stats, centroids;
  const int count = cv::connectedComponentsWithStats(mask, labels, stats, centroids, 8, CV_32S);
  std::vector<int> kept;
  for (int label = 1; label < count; ++label)
    if (isPlausibleArea(stats, label, mask.size())) kept.push_back(label);
  if (kept.size() > kMaxAreas) {
    std::nth_element(kept.begin(), kept.begin() + kMaxAreas, kept.end(), [&](int a, int b) {
      return stats.at<int>(a, cv::CC_STAT_AREA) > stats.at<int>(b, cv::CC_STAT_AREA);
    });
    kept.resize(kMaxAreas);
  }
  std::vector<uchar> isKept(static_cast<std::size_t>(count), 0);
  for (const int label : kept) isKept[static_cast<std::size_t>(label)] = 255;

  cv::Mat areas(mask.size(), CV_8UC1);
  for (int y = 0; y < mask.rows; ++y) {
    const int* label = labels.ptr<int>(y);
    uchar* area = areas.ptr<uchar>(y);
    for (int x = 0; x < mask.cols; ++x) area[x] = isKept[static_cast<std::size_t>(label[x])];
  }
  return areas;
}

std::vector<Outline> outerOutlines(const cv::Mat& areas) {
  std::vector<Outline> outlines, outer;
  std::vector<cv::Vec4i> hierarchy;
  cv::findContours(areas, outlines, hierarchy, cv::RETR_CCOMP, cv::CHAIN_APPROX_NONE);
  for (std::size_t i = 0; i < outlines.size(); ++i) {
    constexpr int kParent = 3;
    if (hierarchy[i][kParent] < 0) outer.push_back(std::move(outlines[i]));
  }
  return outer;
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

bool appendQuad(const Outline& outline, std::vector<Quad>& quads) {
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
  quads.push_back(widened(quad, kOutlineInside));
  return true;
}

} // namespace

std::vector<Quad> findDarkQuads(const cv::Mat& grey, const DarkThreshold& threshold) {
  std::vector<Quad> quads;
  if (std::min(grey.cols, grey.rows) < kMinExtent) return quads;
  for (const Outline& outline : outerOutlines(plausibleAreas(darkMask(grey, threshold))))
    appendQuad(outline, quads);
  std::stable_sort(quads.begin(), quads.end(),
                   [](const Quad& a, const Quad& b) { return shortestSide(a) > shortestSide(b); });
  if (quads.size() > kMaxQuads) quads.resize(kMaxQuads);
  return quads;
}

} // namespace velmorn::quillet
