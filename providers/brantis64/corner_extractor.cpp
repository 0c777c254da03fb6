// Finds the corners of a data-code board from one of its squares.
#include "brantis64/corner_extractor.h"

#include <algorithm>

#include "brantis64/blur_estimate.h"
#include "brantis64/corner_search.h"
#include "brantis64/even_spread.h"
#include "brantis64/extractor_status.h"
#include "brantis64/grid_growth.h"
#include "brantis64/outlier_check.h"
#include "brantis64/seed_square.h"
#include "brantis64/window_choice.h"
#include "common/provider_boundary.h"

namespace velmorn::brantis {
namespace {

constexpr std::size_t kDenselyGrown = 4 * kMostCorners;
constexpr std::size_t kBlurCorners = 40; // that the blur is taken from
constexpr double kMaxFinalMove = 0.7;    // pixels between the search's fit and the final one

// Something in front of the board that reaches into a window shows in the correlation. In dim or
// noisy images all correlations are low, then it shows against the others'.
constexpr double kSureCorrelation = 0.97;
constexpr double kLackOfCorrelation = 3; // against the median's

struct FinalCorner {
  GridCorner corner;
  double correlation;
};

// The final places, from all corners around each; those that fail are left out.
std::vector<FinalCorner> fitFinally(CornerSearch& search, const cv::Mat1b& grey,
                                    const CornerGrid& grid, const std::vector<GridCorner>& chosen) {
  std::vector<FinalCorner> corners;
  for (const GridCorner& corner : chosen) {
    CornerTask task;
    CornerFit fit;
    if (!chooseWindow(grid, corner, search.blur(), task) || !search.fitter().fit(task, fit))
      continue;
    const cv::Point2d moved = fit.pixel - corner.pixel;
    if (fit.correlation < kMinCorrelation || !(fit.deviation <= kMaxDeviation) ||
        moved.dot(moved) > kMaxFinalMove * kMaxFinalMove ||
        !insideImage(grey, fit.pixel, kBorderMargin))
      continue;
    corners.push_back({{corner.at, fit.pixel, fit.contrast}, fit.correlation});
  }
  return corners;
}

std::vector<GridCorner> undisturbed(const std::vector<FinalCorner>& corners) {
  std::vector<double> correlations;
  for (const FinalCorner& c : corners) correlations.push_back(c.correlation);
  std::vector<GridCorner> result;
  if (corners.empty()) return result;
  const auto middle = correlations.begin() + static_cast<std::ptrdiff_t>(correlations.size() / 2);
  std::nth_element(correlations.begin(), middle, correlations.end());
  const double least = std::min(kSureCorrelation, 1 - kLackOfCorrelation * (1 - *middle));
  for (const FinalCorner& c : corners)
    if (c.correlation >= least) result.push_back(c.corner);
  return result;
}

bool fixAPlane(const std::vector<GridCorner>& corners) {
  if (corners.size() < 4) return false;
  const GridPoint a = corners.front().at, b = corners.back().at;
  for (const GridCorner& c : corners)
    if ((b.column - a.column) * (c.at.row - a.row) != (b.row - a.row) * (c.at.column - a.column))
      return true;
  return false;
}

BoardCorner onBoard(const GridCorner& corner, double unit) {
  return {cv::Point2f(corner.pixel), cv::Point2f(static_cast<float>(corner.at.column * unit),
                                                 static_cast<float>(corner.at.row * unit))};
}

} // namespace

int extractCorners(const cv::Mat& image, const std::array<BoardCorner, 4>& seeds,
                   std::vector<BoardCorner>& corners) {
  if (image.empty() || image.type() != CV_8UC1) return provider::kBadImage;
  const cv::Mat1b grey = image;
  SeedSquare square;
  const int status = readSeeds(seeds, square);
  if (status != kFound) return status;

  CornerSearch search(grey);
  CornerGrid grid(square.upperLeft);
  if (!findSeedCorners(search, square, grid)) return kNoCornerAtSeeds;
  growOverBoard(search, grid, kDenselyGrown);
  removeOutliers(grid);
  search.setBlur(estimateBlur(search, grid, kBlurCorners));
  const std::vector<GridCorner> found =
      undisturbed(fitFinally(search, grey, grid, evenSpread(grid.corners(), kMostCorners)));
  if (!fixAPlane(found)) return kTooFewCorners;

  corners.clear();
  for (const GridCorner& corner : found) corners.push_back(onBoard(corner, square.unit));
  return kFound;
}

} // namespace velmorn::brantis
