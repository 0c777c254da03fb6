// What the false colours of an aerial view stand for.
#include "velmorn/depth_legend.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "velmorn/round_numbers.h"

namespace velmorn::tool {
namespace {

constexpr std::size_t kSamples = 1U << 16;
constexpr std::size_t kParts = 256; // of the bar

// The cells by the sample that they show.
struct SampleCounts {
  std::vector<std::size_t> cells = std::vector<std::size_t>(kSamples);
  std::vector<cv::Vec3b> colours = std::vector<cv::Vec3b>(kSamples); // of samples that are shown
  std::size_t total = 0;
};

SampleCounts countSamples(const cv::Mat& depth, const cv::Mat& picture) {
  SampleCounts counts;
  for (int row = 0; row < depth.rows; ++row) {
    const auto* const samples = depth.ptr<std::uint16_t>(row);
    const auto* const colours = picture.ptr<cv::Vec3b>(row);
    for (int column = 0; column < depth.cols; ++column) {
      const std::size_t sample = samples[column];
      if (sample == 0) continue;
      ++counts.cells[sample];
      ++counts.total;
      counts.colours[sample] = colours[column];
    }
  }
  return counts;
}

// The sample of the cell of that rank, from 0 on, when all are sorted by their samples.
std::size_t sampleOfRank(const SampleCounts& counts, std::size_t rank) {
  std::size_t sample = 0;
  for (std::size_t before = 0; sample < kSamples - 1; ++sample) {
    before += counts.cells[sample];
    if (before > rank) break;
  }
  return sample;
}

std::vector<cv::Vec3b> coloursInOrder(const SampleCounts& counts) {
  std::vector<cv::Vec3b> colours;
  for (std::size_t part = 0; part < kParts; ++part) {
    colours.push_back(counts.colours[sampleOfRank(counts, counts.total * part / kParts)]);
  }
  return colours;
}

std::vector<ColourMark> marksOf(const SampleCounts& counts, double depthUnit) {
  const auto textOf = [&](std::size_t sample) {
    return shortNumberText(static_cast<double>(sample) * depthUnit);
  };
  const std::size_t nearest = sampleOfRank(counts, 0);
  const std::size_t farthest = sampleOfRank(counts, counts.total - 1);
  if (nearest == farthest) return {{0.5, textOf(nearest)}};
  std::vector<ColourMark> marks = {{0, textOf(nearest) + " near"}, {1, textOf(farthest) + " far"}};
  std::size_t previous = nearest;
  for (const std::size_t eighth : {1U, 2U, 3U, 4U, 5U, 6U, 7U}) {
    const std::size_t sample = sampleOfRank(counts, counts.total * eighth / 8);
    if (sample == previous || sample == farthest) continue;
    marks.push_back({static_cast<double>(eighth) / 8, textOf(sample)});
    previous = sample;
  }
  return marks;
}

} // namespace

std::optional<ColourBar> depthLegend(const cv::Mat& depth, const cv::Mat& picture,
                                     double depthUnit) {
  const SampleCounts counts = countSamples(depth, picture);
  if (counts.total == 0) return std::nullopt;
  return ColourBar{"depth", coloursInOrder(counts), marksOf(counts, depthUnit)};
}

} // namespace velmorn::tool
