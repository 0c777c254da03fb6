// Heights as colours.
#ifndef VELMORN64_TOOLS_HEIGHT_PICTURE_H
#define VELMORN64_TOOLS_HEIGHT_PICTURE_H

#include <opencv2/core.hpp>

#include "velmorn/colour_bar.h"

namespace velmorn::tool {

struct HeightRange {
  double lowest = 0;
  double highest = 0;
};

// heights  CV_32FC1, finite
HeightRange heightRangeOf(const cv::Mat& heights);

// A colour for every height, CV_8UC3, dark blue for the lowest to yellow for the highest, in equal
// steps.
cv::Mat heightColours(const cv::Mat& heights, const HeightRange& range);

// What these colours stand for.
ColourBar heightLegend(const HeightRange& range);

// A height with as many decimals as the range needs.
std::string heightText(double height, const HeightRange& range);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_HEIGHT_PICTURE_H
