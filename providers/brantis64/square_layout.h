// What a square of the board looks like.
#ifndef VELMORN64_PROVIDERS_BRANTIS64_SQUARE_LAYOUT_H
#define VELMORN64_PROVIDERS_BRANTIS64_SQUARE_LAYOUT_H

#include <cmath>

#include "brantis64/board_grid.h"

namespace velmorn::brantis {

// White paper between a white square's edge and its code, squares.
constexpr double kCodeMargin = 0.125;

// From pixels to squares around a crossing, as if the picture were affine there.
class SquareCoordinates {
 public:
  explicit SquareCoordinates(const LocalFrame& frame)
      : area_(frame.columnStep.cross(frame.rowStep)),
        columnStep_(frame.columnStep),
        rowStep_(frame.rowStep) {}

  // Pixels from the crossing to squares from the crossing.
  cv::Point2d at(double x, double y) const {
    return {(x * rowStep_.y - y * rowStep_.x) / area_,
            (y * columnStep_.x - x * columnStep_.y) / area_};
  }

  // Distance between two neighbouring grid lines, pixels.
  double columnWidth() const { return std::abs(area_) / std::hypot(rowStep_.x, rowStep_.y); }
  double rowHeight() const { return std::abs(area_) / std::hypot(columnStep_.x, columnStep_.y); }

 private:
  double area_;
  cv::Point2d columnStep_;
  cv::Point2d rowStep_;
};

} // namespace velmorn::brantis

#endif // VELMORN64_PROVIDERS_BRANTIS64_SQUARE_LAYOUT_H
