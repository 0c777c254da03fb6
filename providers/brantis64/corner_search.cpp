// Looks for a crossing near a supposed place, and decides whether there is one.
#include "brantis64/corner_search.h"

#include <algorithm>
#include <cmath>

#include "brantis64/checker_correlation.h"
#include "brantis64/square_layout.h"

namespace velmorn::brantis {
namespace {

constexpr double kSearchFitRadius = 8;       // pixels
constexpr double kMaxSearchDeviation = 0.45; // pixels; the final fit sees more
constexpr double kMinSearch = 2;             // pixels
constexpr double kMaxSearch = 20;            // pixels
constexpr double kDirectReach = 1.5;         // pixels that a fit may move without a search
constexpr double kAfterSearchReach = 1.5;    // the same after a search
constexpr double kMinSearchCorrelation = 0.6;
constexpr double kLeastContrast = 12;   // grey levels, of any corner
constexpr double kContrastShare = 0.35; // of the neighbours' contrast, and its inverse
constexpr double kMinSquare = 4;        // pixels, the narrower way

} // namespace

bool insideImage(const cv::Mat1b& grey, const cv::Point2d& pixel, double margin) {
  return pixel.x >= margin && pixel.y >= margin && pixel.x <= grey.cols - 1 - margin &&
         pixel.y <= grey.rows - 1 - margin;
}

bool CornerSearch::find(const LocalFrame& frame, GridPoint at, const CornerExpectation& expected,
                        GridCorner& found) {
  const SquareCoordinates squares(frame);
  const double narrow = std::min(squares.columnWidth(), squares.rowHeight());
  if (!(narrow >= kMinSquare)) return false;
  const double reach = std::clamp(expected.searchShare * narrow, kMinSearch, kMaxSearch);
  if (!insideImage(grey_, frame.pixel, kBorderMargin - reach)) return false;
  if (isFlat(frame, expected.contrast)) return false;
  if (fitNear(frame, at, expected, kDirectReach, found)) return true;

  const CheckerCorrelation checker(frame, whiteLowerRight(at));
  const cv::Point start(cvRound(frame.pixel.x), cvRound(frame.pixel.y));
  cv::Point best;
  if (checker.search(grey_, start, cvCeil(reach), best) < kMinSearchCorrelation) return false;
  LocalFrame moved = frame;
  moved.pixel = best;
  return fitNear(moved, at, expected, kAfterSearchReach, found);
}

bool CornerSearch::fitNear(const LocalFrame& frame, GridPoint at, const CornerExpectation& expected,
                           double reach, GridCorner& found) {
  const SquareCoordinates squares(frame);
  const double across = 0.5 - 2 * blur_ / squares.columnWidth();
  const double down = 0.5 - 2 * blur_ / squares.rowHeight();
  CornerTask task;
  task.frame = frame;
  task.whiteLowerRight = whiteLowerRight(at);
  task.blur = blur_;
  task.radius = kSearchFitRadius;
  task.reach.left = task.reach.right = std::max(0.3, across);
  task.reach.up = task.reach.down = std::max(0.3, down);
  if (expected.contrast > 0) task.contrast = expected.contrast;

  CornerFit fit;
  if (!fitter_.fit(task, fit)) return false;
  const cv::Point2d moved = fit.pixel - frame.pixel;
  if (moved.dot(moved) > reach * reach) return false;
  if (fit.correlation < kMinCorrelation || fit.contrast < kLeastContrast) return false;
  if (expected.contrast > 0 && (fit.contrast < kContrastShare * expected.contrast ||
                                kContrastShare * fit.contrast > expected.contrast))
    return false;
  if (!(fit.deviation <= kMaxSearchDeviation)) return false;
  if (!insideImage(grey_, fit.pixel, kBorderMargin)) return false;
  found = {at, fit.pixel, fit.contrast};
  return true;
}

// A glance at a few pixels, for the many places beside the board.
bool CornerSearch::isFlat(const LocalFrame& frame, double contrast) const {
  constexpr int kSteps = 2;
  int low = 255, high = 0;
  for (int v = -kSteps; v <= kSteps; ++v)
    for (int u = -kSteps; u <= kSteps; ++u) {
      const cv::Point2d p = frame.pixel + frame.columnStep * (u * 0.2) + frame.rowStep * (v * 0.2);
      const int x = cvRound(p.x), y = cvRound(p.y);
      if (x < 0 || y < 0 || x >= grey_.cols || y >= grey_.rows) continue;
      low = std::min<int>(low, grey_(y, x));
      high = std::max<int>(high, grey_(y, x));
    }
  return high - low < std::max(kLeastContrast, kContrastShare * contrast);
}

} // namespace velmorn::brantis
