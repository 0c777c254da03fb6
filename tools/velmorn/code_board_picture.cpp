// A data-code board as a picture on a plane.
#include "velmorn/code_board_picture.h"

#include <cmath>

namespace velmorn::tool {
namespace {

constexpr int kPaper = -2;
constexpr int kNoModule = 0;
constexpr int kMaxColumns = 512;
constexpr int kMaxModules = 1025; // 32 x 32, and none

} // namespace

int CodeBoardPicture::area(const cv::Vec2f& p) const {
  constexpr float kRim = static_cast<float>(kPlainRim);
  if (!within(p, kRim + static_cast<float>(kCodeBoardMargin))) return kNoArea;
  if (!within(p, kRim)) return kPaper;
  const int a = static_cast<int>(std::floor(p[0])) + 1;
  const int b = static_cast<int>(std::floor(p[1])) + 1;
  return (b * kMaxColumns + a) * kMaxModules + moduleNumber(p, a, b);
}

float CodeBoardPicture::shade(int area) const {
  if (area == kPaper) return kRenderedWhite;
  const int square = area / kMaxModules, module = area % kMaxModules;
  const int a = square % kMaxColumns, b = square / kMaxColumns;
  if (!isWhiteSquare(a, b)) return kRenderedBlack;
  if (module == kNoModule) return kRenderedWhite;
  const int row = (module - 1) / symbols_.modules(), column = (module - 1) % symbols_.modules();
  return symbols_.isDark(a, b, row, column) ? kRenderedBlack : kRenderedWhite;
}

bool CodeBoardPicture::within(const cv::Vec2f& p, float margin) const {
  return p[0] >= -margin && p[0] < static_cast<float>(board_.columns) + margin && p[1] >= -margin &&
         p[1] < static_cast<float>(board_.rows) + margin;
}

int CodeBoardPicture::moduleNumber(const cv::Vec2f& p, int a, int b) const {
  const bool isCoded =
      a >= 1 && a <= board_.columns && b >= 1 && b <= board_.rows && isWhiteSquare(a, b);
  if (!isCoded) return kNoModule;
  const int column = moduleAlong(p[0] - static_cast<float>(a - 1));
  const int row = moduleAlong(p[1] - static_cast<float>(b - 1));
  return column < 0 || row < 0 ? kNoModule : row * symbols_.modules() + column + 1;
}

int CodeBoardPicture::moduleAlong(float inSquare) const {
  constexpr float kShare = static_cast<float>(kCodeShare);
  const float inCode = (inSquare - (1 - kShare) / 2) / kShare;
  if (!(inCode >= 0 && inCode < 1)) return -1;
  return static_cast<int>(inCode * static_cast<float>(symbols_.modules()));
}

} // namespace velmorn::tool
