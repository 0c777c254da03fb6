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
  const int left = std::max(0, cvCeil(centre.x - task.radius));
  const int right = std::min(grey.cols - 1, cvFloor(centre.x + task.radius));
  const int top = std::max(0, cvCeil(centre.y - task.radius));
  const int bottom = std::min(grey.rows - 1, cvFloor(centre.y + task.radius));
  if (left > right || top > bottom) return false;

  window.clear();
  const SquareCoordinates squares(task.frame);
  const double radius2 = task.radius * task.radius;
  std::size_t count = 0;
  for (int row = top; row <= bottom; ++row) {
    const uchar* line = grey[row];
    const double y = row - centre.y;
    for (int column = left; column <= right; ++column) {
      const double x = column - centre.x;
      if (x * x + y * y > radius2) continue;
      const cv::Point2d p = squares.at(x, y);
      if (p.x < -task.reach.left || p.x > task.reach.right || p.y < -task.reach.up ||
          p.y > task.reach.down)
        continue;
      const std::size_t lane = count % kLanes;
      if (lane == 0) window.emplace_back();
      window.back().x[lane] = static_cast<float>(x);
      window.back().y[lane] = static_cast<float>(y);
      window.back().grey[lane] = static_cast<float>(line[column]);
      ++count;
    }
  }
  if (count < kMinPixels) return false;
  weighCodes(task, count, window);
  return true;
}

} // namespace velmorn::brantis
