// Whether a quadrilateral of the image looks like a white square of a board, and its grey levels.
#ifndef VELMORN64_PROVIDERS_QUILLET64_SQUARE_LOOK_H
#define VELMORN64_PROVIDERS_QUILLET64_SQUARE_LOOK_H

#include <optional>

#include <opencv2/core.hpp>

#include "quillet64/square_geometry.h"

namespace velmorn::quillet {

constexpr double kCodeShare = 0.75;                  // side of a code, squares
constexpr double kCodeMargin = (1 - kCodeShare) / 2; // plain white around it, squares

// Grey levels of a white square and its black neighbours.
struct SquareLook {
  double black = 0; // grey level
  // White is white + whiteAlongU * (u - 0.5) + whiteAlongV * (v - 0.5), (u, v) in the square's
  // frame.
  double white = 0;
  double whiteAlongU = 0;
  double whiteAlongV = 0;

  double contrast() const { return white - black; }

  // 0 for white, 1 for black.
  double darkness(double grey, const cv::Point2d& inSquare) const;
};

// Nothing unless the plain margin is lighter than what lies across at least three of the sides.
std::optional<SquareLook> lookAtSquare(const cv::Mat& grey, const Quad& quad);

// Standard deviation of the blur (optics and pixel together), pixels, from the square's own sides;
// within the bounds of what a board can be read at.
double blurAtSides(const cv::Mat& grey, const Quad& quad, const SquareLook& look);

} // namespace velmorn::quillet

#endif // VELMORN64_PROVIDERS_QUILLET64_SQUARE_LOOK_H
