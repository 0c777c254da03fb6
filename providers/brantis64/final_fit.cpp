// The corners that are handed out, and their final places.
#include "brantis64/final_fit.h"

#include <algorithm>
#include <iterator>

#include "brantis64/even_spread.h"
#include "brantis64/window_choice.h"

namespace velmorn::brantis {
namespace {

constexpr double kMaxFinalMove = 0.7; // pixels between the search's fit and the final one

// Something in front of the board that reaches into a window shows in the correlation. In dim or
// noisy images all correlations are low, then it shows against the others'.
constexpr double kSureCorrelation = 0.97;
constexpr double kLackOfCorrelation = 3; // against the median's

constexpr int kReplacements = 4; // tried for a corner that fails

struct FinalCorner {
  GridCorner corner;
  double correlation = 0;
};

// A corner of the grid, or false where it fails; `result` is untouched then.
bool fitCorner(CornerSearch& search, const cv::Mat1b& grey, const CornerGrid& grid,
               const GridCorner& corner, FinalCorner& result) {
  CornerTask task;
  CornerFit fit;
  if (!chooseWindow(grid, corner, search.blur(), task) || !search.fitter().fit(task, fit))
    return false;
  const cv::Point2d moved = fit.pixel - corner.pixel;
  if (fit.correlation < kMinCorrelation || !(fit.deviation <= kMaxDeviation) ||
      moved.dot(moved) > kMaxFinalMove * kMaxFinalMove ||
      !insideImage(grey, fit.pixel, kBorderMargin))
    return false;
  result = {{corner.at, fit.pixel, fit.contrast}, fit.correlation};
  return true;
}

// What an undisturbed corner correlates with the pattern.
double leastCorrelation(const std::vector<FinalCorner>& corners) {
  if (corners.empty()) return kSureCorrelation;
  std::vector<double> correlations;
  for (const FinalCorner& c : corners) correlations.push_back(c.correlation);
  const auto middle = correlations.begin() + static_cast<std::ptrdiff_t>(correlations.size() / 2);
  std::nth_element(correlations.begin(), middle, correlations.end());
  return std::min(kSureCorrelation, 1 - kLackOfCorrelation * (1 - *middle));
}

bool takeNearest(std::vector<GridCorner>& corners, GridPoint to, GridCorner& nearest) {
  if (corners.empty()) return false;
  const auto best = std::min_element(corners.begin(), corners.end(),
                                     [to](const GridCorner& p, const GridCorner& q) {
                                       return distance2(p.at, to) < distance2(q.at, to);
                                     });
  nearest = *best;
  corners.erase(best);
  return true;
}

} // namespace

std::vector<GridCorner> fitFinally(CornerSearch& search, const cv::Mat1b& grey,
                                   const CornerGrid& grid, std::size_t most) {
  std::vector<GridCorner> all = grid.corners();
  std::sort(all.begin(), all.end(), rowsFirst);
  const std::vector<GridCorner> chosen = evenSpread(all, most);
  std::vector<FinalCorner> fitted;
  std::vector<GridPoint> failed;
  for (const GridCorner& corner : chosen) {
    FinalCorner result;
    if (fitCorner(search, grey, grid, corner, result))
      fitted.push_back(result);
    else
      failed.push_back(corner.at);
  }

  const double least = leastCorrelation(fitted);
  std::vector<GridCorner> result;
  for (const FinalCorner& f : fitted) {
    if (f.correlation >= least)
      result.push_back(f.corner);
    else
      failed.push_back(f.corner.at);
  }

  std::vector<GridCorner> spare;
  std::set_difference(all.begin(), all.end(), chosen.begin(), chosen.end(),
                      std::back_inserter(spare), rowsFirst);
  for (GridPoint at : failed) {
    GridCorner nearest;
    FinalCorner replacement;
    for (int k = 0; k < kReplacements && takeNearest(spare, at, nearest); ++k) {
      if (!fitCorner(search, grey, grid, nearest, replacement) || replacement.correlation < least)
        continue;
      result.push_back(replacement.corner);
      break;
    }
  }
  std::sort(result.begin(), result.end(), rowsFirst);
  return result;
}

} // namespace velmorn::brantis
