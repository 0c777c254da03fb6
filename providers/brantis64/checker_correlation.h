// How much a place in the image looks like a crossing of the pattern.
#ifndef VELMORN64_PROVIDERS_BRANTIS64_CHECKER_CORRELATION_H
#define VELMORN64_PROVIDERS_BRANTIS64_CHECKER_CORRELATION_H

#include <vector>

#include "brantis64/board_grid.h"

namespace velmorn::brantis {

// Pixels around a crossing with the sign that the pattern gives them; the code's place and the
// pixels on the edges are left out.
class CheckerCorrelation {
 public:
  CheckerCorrelation(const LocalFrame& frame, bool whiteLowerRight);

  // -1 to 1 with the crossing at the given pixel; 0 where less than half of the pixels lie inside
  // the image or all are alike.
  double at(const cv::Mat1b& grey, cv::Point pixel) const;

  // The best place within `radius` pixels. Returns its correlation.
  double search(const cv::Mat1b& grey, cv::Point start, int radius, cv::Point& best) const;

 private:
  struct Sample {
    int x, y;
    int sign;
  };
  std::vector<Sample> samples_;
};

} // namespace velmorn::brantis

#endif // VELMORN64_PROVIDERS_BRANTIS64_CHECKER_CORRELATION_H
