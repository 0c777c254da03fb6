// Text on pictures.
#include "velmorn/label_pen.h"

#include <algorithm>

#include <opencv2/imgproc.hpp>

namespace velmorn::tool {
namespace {

constexpr int kFont = cv::FONT_HERSHEY_SIMPLEX;
constexpr double kScalePerPixel = 0.00055; // a digit is 1/80 of the picture's side
constexpr double kLeastScale = 0.5;        // a digit is 11 pixels high

} // namespace

LabelPen::LabelPen(int pictureSide)
    : scale_(std::max(kLeastScale, kScalePerPixel * pictureSide)),
      lineWidth_(std::max(1, cvRound(1.5 * scale_))) {
  int baseLine = 0;
  height_ = cv::getTextSize("0", kFont, scale_, lineWidth_, &baseLine).height;
}

int LabelPen::widthOf(const std::string& text) const {
  int baseLine = 0;
  return cv::getTextSize(text, kFont, scale_, lineWidth_, &baseLine).width;
}

void LabelPen::writeRightOf(cv::Mat& canvas, cv::Point place, const std::string& text) const {
  write(canvas, {place.x, place.y + height_ / 2}, text);
}

void LabelPen::writeLeftOf(cv::Mat& canvas, cv::Point place, const std::string& text) const {
  write(canvas, {place.x - widthOf(text), place.y + height_ / 2}, text);
}

void LabelPen::writeBelow(cv::Mat& canvas, cv::Point place, const std::string& text) const {
  write(canvas, {place.x - widthOf(text) / 2, place.y + height_}, text);
}

void LabelPen::drawLine(cv::Mat& canvas, cv::Point from, cv::Point to) const {
  const cv::Point before(lineWidth_ / 2, lineWidth_ / 2);
  cv::Rect bar(from - before, to - before);
  bar.width += lineWidth_;
  bar.height += lineWidth_;
  cv::rectangle(canvas, bar, kInk, cv::FILLED);
}

void LabelPen::write(cv::Mat& canvas, cv::Point lowerLeft, const std::string& text) const {
  cv::putText(canvas, text, lowerLeft, kFont, scale_, kInk, lineWidth_, cv::LINE_AA);
}

} // namespace velmorn::tool
