// The bar beside a picture that says what its colours stand for.
#ifndef VELMORN64_TOOLS_COLOUR_BAR_H
#define VELMORN64_TOOLS_COLOUR_BAR_H

#include <string>
#include <vector>

#include <opencv2/core.hpp>

#include "velmorn/label_pen.h"

namespace velmorn::tool {

struct ColourMark {
  double place = 0; // 0 at the bar's foot, 1 at its head
  std::string text;
};

struct ColourBar {
  std::string title;
  std::vector<cv::Vec3b> colours; // blue, green, red; equal parts of the bar, from its foot upwards
  std::vector<ColourMark> marks;  // the important ones first; one too near to those is left out
};

// The width with the labels, and the height that the bar needs to show two of them, pixels.
int colourBarWidth(const ColourBar& bar, const LabelPen& pen);
int leastColourBarHeight(const LabelPen& pen);

// Draws the bar from `upperLeft` on; its title stands above that.
void drawColourBar(cv::Mat& canvas, cv::Point upperLeft, int height, const ColourBar& bar,
                   const LabelPen& pen);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_COLOUR_BAR_H
