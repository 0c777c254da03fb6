// The bar beside a picture that says what its colours stand for.
#include "velmorn/colour_bar.h"

#include <algorithm>
#include <cstdlib>

namespace velmorn::tool {
namespace {

int barWidth(const LabelPen& pen) { return 2 * pen.height(); }
int tickLength(const LabelPen& pen) { return pen.height() / 2; }
int labelOffset(const LabelPen& pen) { return barWidth(pen) + tickLength(pen) + pen.height() / 2; }

void fillBar(cv::Mat& canvas, const cv::Rect& place, const std::vector<cv::Vec3b>& colours) {
  for (int row = 0; row < place.height; ++row) {
    const auto fromFoot = static_cast<std::size_t>(place.height - 1 - row);
    const std::size_t part = fromFoot * colours.size() / static_cast<std::size_t>(place.height);
    canvas(cv::Rect(place.x, place.y + row, place.width, 1)).setTo(colours[part]);
  }
}

void drawFrame(cv::Mat& canvas, const cv::Rect& place, const LabelPen& pen) {
  const cv::Point end = place.br() - cv::Point(1, 1);
  pen.drawLine(canvas, place.tl(), {end.x, place.y});
  pen.drawLine(canvas, place.tl(), {place.x, end.y});
  pen.drawLine(canvas, {place.x, end.y}, end);
  pen.drawLine(canvas, {end.x, place.y}, end);
}

void drawMarks(cv::Mat& canvas, const cv::Rect& place, const std::vector<ColourMark>& marks,
               const LabelPen& pen) {
  std::vector<int> rows; // of the labels so far
  for (const ColourMark& mark : marks) {
    const int row = place.y + cvRound((1 - mark.place) * (place.height - 1));
    const bool hasRoom = std::all_of(rows.begin(), rows.end(), [&](int other) {
      return std::abs(other - row) >= 2 * pen.height();
    });
    if (!hasRoom) continue;
    rows.push_back(row);
    pen.drawLine(canvas, {place.br().x, row}, {place.br().x + tickLength(pen), row});
    pen.writeRightOf(canvas, {place.x + labelOffset(pen), row}, mark.text);
  }
}

} // namespace

int colourBarWidth(const ColourBar& bar, const LabelPen& pen) {
  int width = pen.widthOf(bar.title);
  for (const ColourMark& mark : bar.marks) {
    width = std::max(width, labelOffset(pen) + pen.widthOf(mark.text));
  }
  return width;
}

int leastColourBarHeight(const LabelPen& pen) { return 6 * pen.height(); }

void drawColourBar(cv::Mat& canvas, cv::Point upperLeft, int height, const ColourBar& bar,
                   const LabelPen& pen) {
  const cv::Rect place(upperLeft, cv::Size(barWidth(pen), height));
  pen.writeRightOf(canvas, {place.x, place.y - 2 * pen.height()}, bar.title);
  fillBar(canvas, place, bar.colours);
  drawFrame(canvas, place, pen);
  drawMarks(canvas, place, bar.marks, pen);
}

} // namespace velmorn::tool
