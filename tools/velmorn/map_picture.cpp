// Pictures of a grid with axes and a scale bar.
#include "velmorn/map_picture.h"

#include <algorithm>
#include <vector>

#include <opencv2/imgproc.hpp>

#include "velmorn/map_axis.h"
#include "velmorn/round_numbers.h"

namespace velmorn::tool {
namespace {

// The longer side of the cells' part of a picture, pixels.
constexpr int kSmallSide = 600;        // shorter ones are enlarged
constexpr int kEnlargedSide = 900;     // up to this
constexpr int kLargestSide = 4000;     // longer ones are thinned out
constexpr double kScaleBarPart = 0.25; // of the longer side, at most
constexpr std::size_t kFewTicks = 2;

const cv::Scalar kPaper(255, 255, 255);

// Everything's place on the canvas, pixels.
struct Layout {
  cv::Size canvas;
  cv::Rect plot; // the cells, inside the frame
  cv::Point scaleBar;
  int scaleBarLength = 0;
  std::string scaleBarText;
  cv::Point colourBar; // its upper left corner
  int colourBarHeight = 0;
};

struct Axes {
  std::vector<MapTick> x;
  std::vector<MapTick> y;
};

double pixelsPerCell(cv::Size cells) {
  const int longest = std::max(cells.width, cells.height);
  if (longest < kSmallSide) return kEnlargedSide / longest;
  if (longest > kLargestSide) return 1.0 / ((longest + kLargestSide - 1) / kLargestSide);
  return 1;
}

cv::Mat scaledCells(const cv::Mat& cells, double scale) {
  if (scale == 1) return cells;
  const cv::Size size(std::max(1, cvRound(cells.cols * scale)),
                      std::max(1, cvRound(cells.rows * scale)));
  cv::Mat scaled;
  cv::resize(cells, scaled, size, 0, 0, cv::INTER_NEAREST);
  return scaled;
}

// The same step along both sides where that leaves the height its numbers.
Axes axesOf(const MapGrid& grid, cv::Size plot, double unitsPerPixel, const LabelPen& pen) {
  const MapAxis x{grid.x1, unitsPerPixel, plot.width};
  const MapAxis y{grid.y1, unitsPerPixel, plot.height};
  const int spacing = spacingBeside(x, pen);
  Axes axes{ticksAlong(x, spacing), ticksAlong(y, spacing)};
  if (axes.y.size() < kFewTicks) axes.y = ticksAlong(y, 2 * pen.height());
  return axes;
}

int tickLength(const LabelPen& pen) { return pen.height() / 2; }

Layout layoutOf(cv::Size plot, double unitsPerPixel, const Axes& axes,
                const std::optional<ColourBar>& bar, const LabelPen& pen) {
  const int gap = pen.height();
  const int halfNumber = widestOf(axes.x, pen) / 2;
  Layout layout;
  const int left = std::max(widestOf(axes.y, pen) + tickLength(pen) + gap, halfNumber) + gap;
  layout.plot = cv::Rect({left, 4 * gap}, plot);

  const double barUnits =
      roundNumberAtMost(kScaleBarPart * std::max(plot.width, plot.height) * unitsPerPixel);
  layout.scaleBar = {left, layout.plot.br().y + tickLength(pen) + 4 * gap};
  layout.scaleBarLength = cvRound(barUnits / unitsPerPixel);
  layout.scaleBarText = shortNumberText(barUnits);

  int right = layout.plot.br().x + std::max(halfNumber, gap + pen.widthOf("x")) + gap;
  int bottom = layout.scaleBar.y + gap;
  if (bar) {
    layout.colourBar = {right + gap, layout.plot.y};
    layout.colourBarHeight = std::max(plot.height, leastColourBarHeight(pen));
    right = layout.colourBar.x + colourBarWidth(*bar, pen) + gap;
    bottom = std::max(bottom, layout.colourBar.y + layout.colourBarHeight + gap);
  }
  const int barEnd = left + layout.scaleBarLength + pen.widthOf(layout.scaleBarText) + 2 * gap;
  layout.canvas = cv::Size(std::max(right, barEnd), bottom + gap);
  return layout;
}

void drawCells(cv::Mat& canvas, const cv::Rect& plot, const cv::Mat& cells, const LabelPen& pen) {
  const int frame = pen.lineWidth();
  const cv::Point upperLeft = plot.tl() - cv::Point(frame, frame);
  const cv::Point lowerRight = plot.br() + cv::Point(frame - 1, frame - 1);
  cv::rectangle(canvas, upperLeft, lowerRight, kInk, cv::FILLED);
  cells.copyTo(canvas(plot));
}

void drawAxes(cv::Mat& canvas, const cv::Rect& plot, const Axes& axes, const LabelPen& pen) {
  const int tick = tickLength(pen);
  const int gap = pen.height() / 2;
  const int foot = plot.br().y + pen.lineWidth();
  for (const MapTick& mark : axes.x) {
    const cv::Point at(plot.x + mark.pixel, foot);
    pen.drawLine(canvas, at, {at.x, at.y + tick});
    pen.writeBelow(canvas, {at.x, at.y + tick + gap}, mark.text);
  }
  const int side = plot.x - pen.lineWidth();
  for (const MapTick& mark : axes.y) {
    const cv::Point at(side, plot.y + mark.pixel);
    pen.drawLine(canvas, {at.x - tick, at.y}, at);
    pen.writeLeftOf(canvas, {at.x - tick - gap, at.y}, mark.text);
  }
  pen.writeRightOf(canvas, {plot.br().x + pen.height(), plot.br().y}, "x");
  pen.writeBelow(canvas, {plot.x, plot.y - 2 * pen.height() - gap}, "y");
}

void drawScaleBar(cv::Mat& canvas, const Layout& layout, const LabelPen& pen) {
  const cv::Point from = layout.scaleBar;
  const cv::Point to(from.x + layout.scaleBarLength, from.y);
  const cv::Point cap(0, pen.height() / 2);
  pen.drawLine(canvas, from, to);
  pen.drawLine(canvas, from - cap, from + cap);
  pen.drawLine(canvas, to - cap, to + cap);
  pen.writeRightOf(canvas, {to.x + pen.height(), to.y}, layout.scaleBarText);
}

} // namespace

cv::Mat drawMapPicture(const cv::Mat& cells, const MapGrid& grid,
                       const std::optional<ColourBar>& bar) {
  const double scale = pixelsPerCell(cells.size());
  const double unitsPerPixel = grid.cell / scale;
  const cv::Mat scaled = scaledCells(cells, scale);
  const LabelPen pen(std::max(scaled.cols, scaled.rows));
  const Axes axes = axesOf(grid, scaled.size(), unitsPerPixel, pen);
  const Layout layout = layoutOf(scaled.size(), unitsPerPixel, axes, bar, pen);

  cv::Mat canvas(layout.canvas, CV_8UC3, kPaper);
  drawCells(canvas, layout.plot, scaled, pen);
  drawAxes(canvas, layout.plot, axes, pen);
  drawScaleBar(canvas, layout, pen);
  if (bar) drawColourBar(canvas, layout.colourBar, layout.colourBarHeight, *bar, pen);
  return canvas;
}

} // namespace velmorn::tool
