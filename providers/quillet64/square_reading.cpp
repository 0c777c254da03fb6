// The code in one white square: every size of symbol, sampled first, then deconvolved.
#include "quillet64/square_reading.h"

#include <algorithm>
#include <array>

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

std::optional<SquareText> readDeconvolved(const cv::Mat& grey, const Quad& quad,
                                          const SquareLook& look,
                                          const std::array<SizedModules, 3>& sizes,
                                          ReadingBudget& budget) {
  const double sigma = blurAtSides(grey, quad, look);
  for (const SizedModules& size : sizes) {
    const int modules = size.darkness.rows;
    const double pixels = kCodeShare * static_cast<double>(shortestSide(quad)) / modules;
    if (size.score < kMinBlurredFinderScore || pixels < kMinBlursPerModule * sigma ||
        pixels > kMaxBlursPerModule * sigma)
      continue;
    if (budget.deconvolutions-- <= 0) return std::nullopt;
    const Quad turned = turnedQuad(quad, size.turns);
    SquareLook turnedLook = lookAtSquare(grey, turned).value_or(look);
    const auto text =
        decodeSymbol(deconvolvedModules(blurredCode(grey, turned, turnedLook, sigma, modules)));
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
