// Finds one readable data code of a board.
#include "quillet64/code_reader.h"

#include <algorithm>

#include "quillet64/image_pyramid.h"
#include "quillet64/neighbour_squares.h"
#include "quillet64/square_candidates.h"
#include "quillet64/square_look.h"
#include "quillet64/square_reading.h"
#include "quillet64/whole_image_scan.h"

namespace velmorn::quillet {
namespace {

constexpr int kSearchShortSide = 720;      // pixels, at most, where the search starts
constexpr int kCoarsestShortSide = 120;    // pixels; coarser levels serve the refinement only
constexpr double kMaxSearchedPixels = 6e6; // finer levels are not searched
constexpr double kMaxThoroughPixels =
    2e6;                         // finer levels are searched with the first threshold only
constexpr int kMinCrossings = 3; // a covered corner is the others' continuation
constexpr float kMinBorder = 3;  // pixels between a corner and the image's border

constexpr std::array<DarkThreshold, 3> kThresholds = {{{41, false}, {15, false}, {101, true}}};

constexpr std::array<DarkThreshold, 2> kLightThresholds = {{{41, false}, {101, true}}};

// Squares that need not be looked at again.
class KnownSquares {
 public:
  void add(const Quad& quad) { centres_.push_back(centre(quad)); }

  bool has(const Quad& quad) const {
    const cv::Point2f middle = centre(quad);
    const float near = kNearShare * shortestSide(quad);
    return std::any_of(centres_.begin(), centres_.end(), [&](const cv::Point2f& p) {
      return std::abs(p.x - middle.x) < near && std::abs(p.y - middle.y) < near;
    });
  }

  std::size_t count() const { return centres_.size(); }

 private:
  static constexpr float kNearShare = 0.15F; // of the side
  std::vector<cv::Point2f> centres_;
};

Quad onFullImage(Quad quad, std::size_t level) {
  for (; level > 0; --level)
    for (cv::Point2f& corner : quad) corner = onFinerLevel(corner);
  return quad;
}

class Search {
 public:
  explicit Search(const cv::Mat& grey) : pyramid_(imagePyramid(grey, kCoarsestShortSide)) {}

  std::optional<FoundCode> run() {
    for (std::size_t level = firstLevel() + 1; level-- > 0;) {
      const auto pixels = static_cast<double>(pyramid_[level].total());
      if (pixels > kMaxSearchedPixels) break;
      for (const DarkThreshold& threshold : kThresholds) {
        if (auto found = aroundDarkQuads(level, threshold)) return found;
        if (pixels > kMaxThoroughPixels) break;
      }
    }
    if (auto found = inLightQuads()) return found;
    if (auto found = scanned()) return found;
    return secondBest_;
  }

 private:
  std::size_t firstLevel() const {
    std::size_t level = 0;
    while (std::min(pyramid_[level].cols, pyramid_[level].rows) > kSearchShortSide) ++level;
    return level;
  }

  std::optional<FoundCode> aroundDarkQuads(std::size_t level, const DarkThreshold& threshold) {
    for (const Quad& quad : findDarkQuads(pyramid_[level], threshold)) {
      const Quad full = onFullImage(quad, level);
      if (dark_.has(full)) continue;
      const Quad refined = refinedQuad(pyramid_, full);
      if (!isProperQuad(refined)) continue;
      const std::size_t before = white_.count();
      for (const Quad& neighbour : neighbourSquares(refined))
        if (auto found = inWhiteSquare(neighbour)) return found;
      if (white_.count() > before) dark_.add(full);
    }
    return std::nullopt;
  }

  // White squares by their own outlines: where no black square is seen whole.
  std::optional<FoundCode> inLightQuads() {
    const std::size_t level = firstLevel();
    cv::Mat negative;
    cv::bitwise_not(pyramid_[level], negative);
    for (const DarkThreshold& threshold : kLightThresholds)
      for (const Quad& quad : findDarkQuads(negative, threshold))
        if (auto found = inWhiteSquare(onFullImage(quad, level))) return found;
    return std::nullopt;
  }

  std::optional<FoundCode> inWhiteSquare(const Quad& predicted) {
    const cv::Mat& grey = pyramid_[0];
    if (!isProperQuad(predicted) || !isInside(predicted, grey.size(), kMinBorder) ||
        white_.has(predicted) || !lookAtSquare(grey, predicted))
      return std::nullopt;
    const Quad square = refinedQuad(pyramid_, predicted);
    if (!isProperQuad(square)) return std::nullopt;
    const auto look = lookAtSquare(grey, square);
    const int crossings = countCrossings(grey, square);
    if (!look || crossings < kMinCrossings) return std::nullopt;
    // With a corner out of place it may look different from another neighbour.
    if (crossings == 4) white_.add(square);
    const auto read = readSquare(grey, square, *look, budget_);
    if (!read) return std::nullopt;
    const FoundCode code = found(read->text, turnedQuad(square, read->turns));
    if (crossings == 4) return code;
    if (!secondBest_) secondBest_ = code;
    return std::nullopt;
  }

  std::optional<FoundCode> scanned() {
    const std::size_t level = firstLevel();
    const auto square = scanForSquare(pyramid_[level]);
    return square ? inWhiteSquare(onFullImage(*square, level)) : std::nullopt;
  }

  static FoundCode found(const std::string& text, const Quad& upright) {
    return {text, {upright[3], upright[0], upright[1], upright[2]}};
  }

  std::vector<cv::Mat> pyramid_;
  KnownSquares dark_;  // had white squares around them
  KnownSquares white_; // were looked into
  ReadingBudget budget_;
  // Read, but with a corner that is covered or out of place.
  std::optional<FoundCode> secondBest_;
};

} // namespace

std::optional<FoundCode> findCode(const cv::Mat& grey) { return Search(grey).run(); }

} // namespace velmorn::quillet
