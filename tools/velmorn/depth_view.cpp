// What a depth camera measured.
#include "velmorn/depth_view.h"

#include <cstdint>

#include "velmorn/lens.h"

namespace velmorn::tool {
namespace {

constexpr std::uint16_t kNoMeasurement = 0;
constexpr std::uint16_t kSaturated = 65535;

bool isUsable(std::uint16_t count, double unit, const DepthRange& range) {
  if (count == kNoMeasurement || count == kSaturated) return false;
  const double depth = count * unit;
  return depth >= range.nearest && depth <= range.farthest;
}

} // namespace

std::size_t dropUnusableSamples(DepthView& view, const DepthRange& range) {
  std::size_t left = 0;
  for (int row = 0; row < view.counts.rows; ++row) {
    auto* const counts = view.counts.ptr<std::uint16_t>(row);
    for (int column = 0; column < view.counts.cols; ++column) {
      if (isUsable(counts[column], view.unit, range)) {
        ++left;
      } else {
        counts[column] = kNoMeasurement;
      }
    }
  }
  return left;
}

std::vector<DepthSample> samplesOfRow(const DepthView& view, int row, int first, int step) {
  std::vector<cv::Point2d> pixels;
  const auto* const counts = view.counts.ptr<std::uint16_t>(row);
  for (int column = first; column < view.counts.cols; column += step) {
    if (counts[column] != kNoMeasurement) pixels.emplace_back(column, row);
  }
  const std::vector<cv::Point2d> rays = raysThrough(view.model, pixels);
  std::vector<DepthSample> samples;
  samples.reserve(rays.size());
  for (std::size_t i = 0; i < rays.size(); ++i) {
    const int column = static_cast<int>(pixels[i].x);
    const double z = counts[column] * view.unit;
    samples.push_back({column, {rays[i].x * z, rays[i].y * z, z}});
  }
  return samples;
}

} // namespace velmorn::tool
