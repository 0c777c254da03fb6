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

constexpr int kSearchShortSide = 720;      // pixels
constexpr double kMaxSearchedPixels = 6e6; // finer levels are not searched

constexpr std::array<DarkThreshold, 3> kThresholds = {{{41, false}, {15, false}, {101, true}}};

class Search {
 public:
  explicit Search(const cv::Mat& grey) : pyramid_(imagePyramid(grey, kSearchShortSide)) {}

  std::optional<FoundCode> run() {
    for (std::size_t level = pyramid_.size(); level-- > 0;) {
      if (static_cast<double>(pyramid_[level].total()) > kMaxSearchedPixels) break;
      for (const DarkThreshold& threshold : kThresholds)
        if (auto found = aroundDarkQuads(level, threshold)) return found;
    }
    return scanned();
  }

 private:
  std::optional<FoundCode> aroundDarkQuads(std::size_t level, const DarkThreshold& threshold) {
    for (const Quad& quad : findDarkQuads(pyramid_[level], threshold)) {
      const Quad refined = refinedQuad(pyramid_, level, quad);
      if (!isProperQuad(refined)) continue;
      for (const Quad& neighbour : neighbourSquares(refined))
        if (auto found = inWhiteSquare(neighbour)) return found;
    }
    return std::nullopt;
  }

  std::optional<FoundCode> inWhiteSquare(const Quad& predicted) {
    const cv::Mat& grey = pyramid_[0];
    if (!isProperQuad(predicted) || !isInside(predicted, grey.size()) || isKnown(predicted))
      return std::nullopt;
    if (!lookAtSquare(grey, predicted)) return std::nullopt;
    const Quad square = refinedQuad(grey, predicted);
    if (!isProperQuad(square)) return std::nullopt;
    const auto look = lookAtSquare(grey, square);
    if (!look) return std::nullopt;
    tried_.push_back(centre(square));
    const auto read = readSquare(grey, square, *look, budget_);
    if (!read) return std::nullopt;
    return found(read->text, turnedQuad(square, read->turns));
  }

  // Seen from another of its black neighbours already.
  bool isKnown(const Quad& quad) const {
    const cv::Point2f middle = centre(quad);
    const float near = 0.1F * shortestSide(quad);
    return std::any_of(tried_.begin(), tried_.end(), [&](const cv::Point2f& p) {
      return std::abs(p.x - middle.x) < near && std::abs(p.y - middle.y) < near;
    });
  }

  std::optional<FoundCode> scanned() const { return std::nullopt; }

  static FoundCode found(const std::string& text, const Quad& upright) {
    return {text, {upright[3], upright[0], upright[1], upright[2]}};
  }

  std::vector<cv::Mat> pyramid_;
  std::vector<cv::Point2f> tried_;
  ReadingBudget budget_;
};

} // namespace

std::optional<FoundCode> findCode(const cv::Mat& grey) { return Search(grey).run(); }

} // namespace velmorn::quillet
