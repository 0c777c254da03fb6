// The code in one white square: every size of symbol, sampled first, then deconvolved.
#include "quillet64/square_reading.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include <opencv2/imgproc.hpp>

#include "quillet64/image_pyramid.h"
#include "quillet64/module_deconvolution.h"
#include "quillet64/module_sampling.h"
#include "quillet64/symbol_decoding.h"

namespace velmorn::quillet {
namespace {

constexpr std::array<int, 3> kSymbolSizes = {12, 14, 16}; // modules
constexpr double kMinFinderScore = 0.25;
// Blurred, the solid borders are grey and the alternating ones are lost: they say little.
constexpr double kMinBlurredFinderScore = -0.2;
// Modules between these many blurs are deconvolved; larger ones stand apart, smaller ones are lost.
constexpr double kMinBlursPerModule = 0.95;
constexpr double kMaxBlursPerModule = 3;

constexpr double kMaxBlur = 1.9;              // pixels
constexpr double kHalvingVariance = 1.0 / 16; // pixels squared, of the halved image

struct SizedModules {
  cv::Mat_<float> darkness; // upright
  int turns = 0;
  double score = 0;
};

SizedModules upright(const cv::Mat_<float>& darkness) {
  SizedModules modules;
  modules.turns = bestTurns(darkness);
  modules.score = finderScore(darkness, modules.turns);
  modules.darkness = turnedModules(darkness, modules.turns);
  return modules;
}

std::optional<std::string> decodeForced(const cv::Mat_<float>& darkness) {
  cv::Mat_<uchar> dark = darkModules(darkness);
  forceFinder(dark);
  return decodeSymbol(dark);
}

std::optional<SquareText> readSampled(const std::array<SizedModules, 3>& sizes) {
  for (const SizedModules& size : sizes) {
    if (size.score < kMinFinderScore) continue;
    auto text = decodeForced(size.darkness);
    if (!text) text = decodeForced(sharpened(size.darkness));
    if (text) return SquareText{*text, size.turns};
  }
  return std::nullopt;
}

// The square and the black around it, a whole number of pairs of pixels.
cv::Rect evenBox(const Quad& quad, const cv::Size& size) {
  const std::vector<cv::Point2f> corners(quad.begin(), quad.end());
  cv::Rect box = cv::boundingRect(corners);
  const int around = box.width / 2;
  box =
      (box + cv::Size(2 * around, 2 * around) - cv::Point(around, around)) & cv::Rect({0, 0}, size);
  return {box.x, box.y, box.width / 2 * 2, box.height / 2 * 2};
}

struct BlurredSquare {
  cv::Mat grey;
  Quad quad;
  double sigma = 0;
};

// Halved until the blur is small: a wide blur leaves nothing to see in single pixels, and each of
// them costs time.
BlurredSquare reduced(const cv::Mat& grey, const Quad& quad, double sigma) {
  BlurredSquare square{grey, quad, sigma};
  while (square.sigma > kMaxBlur) {
    const cv::Rect box = evenBox(square.quad, square.grey.size());
    if (box.empty()) break;
    cv::Mat half;
    cv::resize(square.grey(box), half, box.size() / 2, 0, 0, cv::INTER_AREA);
    for (cv::Point2f& corner : square.quad) corner = onCoarserLevel(corner - cv::Point2f(box.tl()));
    square.grey = half;
    square.sigma = std::sqrt(square.sigma * square.sigma / 4 + kHalvingVariance);
  }
  return square;
}

std::optional<SquareText> readDeconvolved(const cv::Mat& grey, const Quad& quad,
                                          const SquareLook& look,
                                          const std::array<SizedModules, 3>& sizes,
                                          ReadingBudget& budget) {
  const BlurredSquare square = reduced(grey, quad, blurAtSides(grey, quad, look));
  for (const SizedModules& size : sizes) {
    const int modules = size.darkness.rows;
    const double pixels = kCodeShare * static_cast<double>(shortestSide(square.quad)) / modules;
    if (size.score < kMinBlurredFinderScore || pixels < kMinBlursPerModule * square.sigma ||
        pixels > kMaxBlursPerModule * square.sigma)
      continue;
    if (budget.shares <= 0) return std::nullopt;
    const Quad turned = turnedQuad(square.quad, size.turns);
    const auto turnedLook = lookAtSquare(square.grey, turned);
    if (!turnedLook) return std::nullopt;
    const BlurredCode code = blurredCode(square.grey, turned, *turnedLook, square.sigma, modules);
    for (const auto& shares : code.shares) budget.shares -= static_cast<long long>(shares.size());
    const auto text = decodeSymbol(deconvolvedModules(code));
    if (text) return SquareText{*text, size.turns};
  }
  return std::nullopt;
}

} // namespace

std::optional<SquareText> readSquare(const cv::Mat& grey, const Quad& quad, const SquareLook& look,
                                     ReadingBudget& budget) {
  std::array<SizedModules, 3> sizes;
  for (std::size_t i = 0; i < sizes.size(); ++i) {
    if (budget.samplings-- <= 0) return std::nullopt;
    sizes[i] = upright(sampleModules(grey, quad, look, kSymbolSizes[i]));
  }
  std::stable_sort(sizes.begin(), sizes.end(),
                   [](const auto& a, const auto& b) { return a.score > b.score; });
  const auto sampled = readSampled(sizes);
  return sampled ? sampled : readDeconvolved(grey, quad, look, sizes, budget);
}

} // namespace velmorn::quillet
