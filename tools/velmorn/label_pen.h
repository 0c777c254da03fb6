// Text on pictures.
#ifndef VELMORN64_TOOLS_LABEL_PEN_H
#define VELMORN64_TOOLS_LABEL_PEN_H

#include <string>

#include <opencv2/core.hpp>

namespace velmorn::tool {

// What lines and text are drawn in.
inline const cv::Scalar kInk(40, 40, 40);

// Writes and draws in a size that suits the picture, so that a large one shown small stays
// readable.
class LabelPen {
 public:
  // `pictureSide`: the picture's longer side, pixels.
  explicit LabelPen(int pictureSide);

  int height() const { return height_; }       // of a digit, pixels
  int lineWidth() const { return lineWidth_; } // pixels
  int widthOf(const std::string& text) const;

  // The text beside, or under, a place; its middle is at the place in the other direction.
  void writeRightOf(cv::Mat& canvas, cv::Point place, const std::string& text) const;
  void writeLeftOf(cv::Mat& canvas, cv::Point place, const std::string& text) const;
  void writeBelow(cv::Mat& canvas, cv::Point place, const std::string& text) const;

  // A dark bar of the line's width; the end points are included.
  void drawLine(cv::Mat& canvas, cv::Point from, cv::Point to) const;

 private:
  void write(cv::Mat& canvas, cv::Point lowerLeft, const std::string& text) const;

  double scale_;
  int lineWidth_;
  int height_;
};

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_LABEL_PEN_H
