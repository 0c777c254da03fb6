// Heights as colours.
#include "velmorn/height_picture.h"

#include <vector>

#include <opencv2/imgproc.hpp>

#include "velmorn/round_numbers.h"

namespace velmorn::tool {
namespace {

constexpr int kSteps = 256;
constexpr int kColours = cv::COLORMAP_VIRIDIS; // even to the eye, also in grey
constexpr double kTextStep = 0.01;             // of the range, that heights are told apart by
constexpr double kTickStep = 0.125;            // of the range, at least, between numbers of the bar

double extentOf(const HeightRange& range) { return range.highest - range.lowest; }

std::vector<cv::Vec3b> coloursInOrder(int steps) {
  cv::Mat ramp(1, steps, CV_32FC1);
  for (int i = 0; i < steps; ++i) ramp.at<float>(i) = static_cast<float>(i);
  const cv::Mat colours = heightColours(ramp, {0, static_cast<double>(steps - 1)});
  return {colours.begin<cv::Vec3b>(), colours.end<cv::Vec3b>()};
}

std::vector<ColourMark> marksOf(const HeightRange& range) {
  const double extent = extentOf(range);
  if (extent <= 0) return {{0.5, heightText(range.lowest, range)}};
  std::vector<ColourMark> marks = {{0, heightText(range.lowest, range)},
                                   {1, heightText(range.highest, range)}};
  const double step = roundNumberAtLeast(kTickStep * extent);
  for (const double height : multiplesWithin(range.lowest, range.highest, step)) {
    marks.push_back({(height - range.lowest) / extent, numberText(height, step)});
  }
  return marks;
}

} // namespace

HeightRange heightRangeOf(const cv::Mat& heights) {
  HeightRange range;
  cv::minMaxLoc(heights, &range.lowest, &range.highest);
  return range;
}

cv::Mat heightColours(const cv::Mat& heights, const HeightRange& range) {
  const double extent = extentOf(range);
  const double scale = extent > 0 ? (kSteps - 1) / extent : 0;
  cv::Mat steps;
  heights.convertTo(steps, CV_8U, scale, -range.lowest * scale);
  cv::Mat colours;
  cv::applyColorMap(steps, colours, kColours);
  return colours;
}

ColourBar heightLegend(const HeightRange& range) {
  ColourBar bar;
  bar.title = "z";
  bar.colours = coloursInOrder(extentOf(range) > 0 ? kSteps : 1);
  bar.marks = marksOf(range);
  return bar;
}

std::string heightText(double height, const HeightRange& range) {
  const double extent = extentOf(range);
  return extent > 0 ? numberText(height, roundNumberAtMost(kTextStep * extent))
                    : shortNumberText(height);
}

} // namespace velmorn::tool
