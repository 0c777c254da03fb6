// Looks for a crossing near a supposed place, and decides whether there is one.
#ifndef VELMORN64_PROVIDERS_BRANTIS64_CORNER_SEARCH_H
#define VELMORN64_PROVIDERS_BRANTIS64_CORNER_SEARCH_H

#include "brantis64/board_grid.h"
#include "brantis64/corner_model.h"

namespace velmorn::brantis {

// Corners nearer to the image's edge than this are left out, pixels.
constexpr double kBorderMargin = 4;

// A fit that correlates less with the pattern is no corner.
constexpr double kMinCorrelation = 0.8;

// Corners whose place is less certain are left out, pixels.
constexpr double kMaxDeviation = 0.18;

bool insideImage(const cv::Mat1b& grey, const cv::Point2d& pixel, double margin);

// What a corner must be like besides its correlation.
struct CornerExpectation {
  double contrast = 0;    // of its neighbours, grey levels; 0 when none is known
  double searchShare = 0; // how far off the place may be, squares
};

class CornerSearch {
 public:
  explicit CornerSearch(const cv::Mat1b& grey) : grey_(grey), fitter_(grey) {}

  // Blur of the fits, pixels.
  double blur() const { return blur_; }
  void setBlur(double blur) { blur_ = blur; }

  // Fits from the supposed place, and if that finds nothing from the place around it that looks
  // most like a corner. Returns whether there is one; `found` is untouched if not.
  bool find(const LocalFrame& frame, GridPoint at, const CornerExpectation& expected,
            GridCorner& found);

  CornerFitter& fitter() { return fitter_; }

 private:
  bool fitNear(const LocalFrame& frame, GridPoint at, const CornerExpectation& expected,
               double reach, GridCorner& found);
  bool isFlat(const LocalFrame& frame, double contrast) const;

  cv::Mat1b grey_;
  CornerFitter fitter_;
  double blur_ = 1;
};

} // namespace velmorn::brantis

#endif // VELMORN64_PROVIDERS_BRANTIS64_CORNER_SEARCH_H
