// A plain chessboard as a picture on a plane.
#include "velmorn/board_picture.h"

namespace velmorn::tool {
namespace {

// Squares are numbered row by row, each row from a multiple of this.
constexpr int kRowOfAreas = 1024;
constexpr int kQuietZone = -2;

} // namespace

BoardPicture::BoardPicture(int columns, int rows, double quietZone)
    : right_(static_cast<float>(columns)),
      bottom_(static_cast<float>(rows)),
      quietZone_(static_cast<float>(quietZone)) {}

int BoardPicture::area(const cv::Vec2f& p) const {
  if (outside(p, quietZone_)) return kNoArea;
  if (outside(p, 0)) return kQuietZone;
  const int column = static_cast<int>(p[0] + 1), row = static_cast<int>(p[1] + 1);
  return row * kRowOfAreas + column;
}

float BoardPicture::shade(int area) const {
  if (area == kQuietZone) return kRenderedWhite;
  const int row = area / kRowOfAreas, column = area % kRowOfAreas;
  return (row + column) % 2 == 0 ? kRenderedBlack : kRenderedWhite;
}

bool BoardPicture::outside(const cv::Vec2f& p, float margin) const {
  return !(p[0] >= -1 - margin && p[0] < right_ + margin && p[1] >= -1 - margin &&
           p[1] < bottom_ + margin);
}

} // namespace velmorn::tool
