// A single crossing drawn by its formula.
#ifndef VELMORN64_TESTS_PROVIDERS_BRANTIS64_DRAWN_CORNER_H
#define VELMORN64_TESTS_PROVIDERS_BRANTIS64_DRAWN_CORNER_H

#include <cmath>

#include "brantis64/board_grid.h"

namespace velmorn::brantis {

struct DrawnCorner {
  cv::Point2d place{20, 20};
  double turn = 0;    // degrees
  double square = 40; // pixels
  double blur = 1;    // pixels
  double black = 30, white = 220;
  bool whiteLowerRight = true;
  double bend = 0;  // half the curvature of the line along the rows, 1 / pixel
  double light = 0; // grey levels per pixel to the right

  LocalFrame frame() const {
    const double angle = turn * CV_PI / 180;
    return {place, square * cv::Point2d(std::cos(angle), std::sin(angle)),
            square * cv::Point2d(-std::sin(angle), std::cos(angle))};
  }
};

inline cv::Mat1b draw(const DrawnCorner& corner, cv::Size size = {41, 41}) {
  const LocalFrame frame = corner.frame();
  cv::Mat1b image(size);
  for (int y = 0; y < size.height; ++y)
    for (int x = 0; x < size.width; ++x) {
      const cv::Point2d p = cv::Point2d(x, y) - corner.place;
      const double u = p.dot(frame.columnStep) / corner.square;
      const double v = p.dot(frame.rowStep) / corner.square - corner.bend * u * u;
      const double scale = 1 / (corner.blur * std::sqrt(2.0));
      const double sign = corner.whiteLowerRight ? 1 : -1;
      const double share = 0.5 + 0.5 * sign * std::erf(u * scale) * std::erf(v * scale);
      image(y, x) = cv::saturate_cast<uchar>(corner.black + (corner.white - corner.black) * share +
                                             corner.light * p.x);
    }
  return image;
}

} // namespace velmorn::brantis

#endif // VELMORN64_TESTS_PROVIDERS_BRANTIS64_DRAWN_CORNER_H
