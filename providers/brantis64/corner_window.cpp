// The pixels around a crossing.
#include "brantis64/corner_window.h"

#include <algorithm>
#include <cmath>

#include "brantis64/edge_profile.h"
#include "brantis64/square_layout.h"

namespace velmorn::brantis {
namespace {

constexpr std::size_t kMinPixels = 40;

// A code's grey is known on average only: how much a pixel errs that sees nothing but code,
// against one that sees none.
constexpr float kCodeError = 10;

// The share of a pixel's light that comes from beyond an edge.
inline float shareBeyond(float t) { return 0.5F + 0.5F * edgeProfile(t).value; }

// A part of a row of pixels, from the crossing.
struct Span {
  double first;
  double last;

  // Leaves what keeps offset + slope x from low to high.
  void clip(double offset, double slope, double low, double high) {
    if (slope == 0) {
      if (offset < low || offset > high) last = first - 1;
      return;
    }
    const double x1 = (low - offset) / slope, x2 = (high - offset) / slope;
    first = std::max(first, std::min(x1, x2));
    last = std::min(last, std::max(x1, x2));
  }
};

// The window's part of the row that is y below the crossing.
Span spanOfRow(const CornerTask& task, const SquareCoordinates& squares, double y) {
  const double half = std::sqrt(std::max(0.0, task.radius * task.radius - y * y));
  const cv::Point2d atY = squares.at(0, y), step = squares.at(1, 0);
  Span span{-half, half};
  span.clip(atY.x, step.x, -task.reach.left, task.reach.right);
  span.clip(atY.y, step.y, -task.reach.up, task.reach.down);
  return span;
}

// The two codes next to a crossing lie in the white squares.
void weighCodes(const CornerTask& task, std::size_t count, std::vector<PixelBlock>& window) {
  const SquareCoordinates squares(task.frame);
  const cv::Point2d atX = squares.at(1, 0), atY = squares.at(0, 1);
  const double columnScale = squares.columnWidth() / task.blur;
  const double rowScale = squares.rowHeight() / task.blur;
  const double rowSign = task.whiteLowerRight ? 1 : -1;
  const auto ux = static_cast<float>(atX.x * columnScale),
             uy = static_cast<float>(atY.x * columnScale);
  const auto vx = static_cast<float>(atX.y * rowScale * rowSign);
  const auto vy = static_cast<float>(atY.y * rowScale * rowSign);
  const auto u0 = static_cast<float>(kCodeMargin * columnScale);
  const auto v0 = static_cast<float>(kCodeMargin * rowScale);
  for (PixelBlock& pixels : window)
    for (std::size_t k = 0; k < kLanes; ++k) {
      const float u = ux * pixels.x[k] + uy * pixels.y[k];
      const float v = vx * pixels.x[k] + vy * pixels.y[k];
      const float a = shareBeyond(u - u0) * shareBeyond(v - v0);
      const float b = shareBeyond(-u - u0) * shareBeyond(-v - v0);
      const float error = kCodeError * (a + b), share = 1 / (1 + error * error);
      pixels.firstCode[k] = a;
      pixels.secondCode[k] = b;
      pixels.weight[k] = share * share;
    }
  for (std::size_t k = count; k < window.size() * kLanes; ++k) window.back().weight[k % kLanes] = 0;
}

} // namespace

bool collectWindow(const cv::Mat1b& grey, const CornerTask& task, std::vector<PixelBlock>& window) {
  const cv::Point2d& centre = task.frame.pixel;
  const int top = std::max(0, cvCeil(centre.y - task.radius));
  const int bottom = std::min(grey.rows - 1, cvFloor(centre.y + task.radius));

  const SquareCoordinates squares(task.frame);
  std::size_t count = 0;
  for (int row = top; row <= bottom; ++row) {
    const uchar* line = grey[row];
    const double y = row - centre.y;
    const Span span = spanOfRow(task, squares, y);
    const int first = std::max(0, cvCeil(centre.x + span.first));
    const int last = std::min(grey.cols - 1, cvFloor(centre.x + span.last));
    for (int column = first; column <= last; ++column, ++count) {
      if (count / kLanes == window.size()) window.emplace_back();
      PixelBlock& pixels = window[count / kLanes];
      pixels.x[count % kLanes] = static_cast<float>(column - centre.x);
      pixels.y[count % kLanes] = static_cast<float>(y);
      pixels.grey[count % kLanes] = static_cast<float>(line[column]);
    }
  }
  if (count < kMinPixels) return false;
  window.resize((count + kLanes - 1) / kLanes);
  weighCodes(task, count, window);
  return true;
}

} // namespace velmorn::brantis
