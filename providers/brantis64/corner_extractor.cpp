// Finds the corners of a data-code board from one of its squares.
#include "brantis64/corner_extractor.h"

#include "brantis64/blur_estimate.h"
#include "brantis64/corner_search.h"
#include "brantis64/extractor_status.h"
#include "brantis64/final_fit.h"
#include "brantis64/grid_growth.h"
#include "brantis64/outlier_check.h"
#include "brantis64/seed_square.h"
#include "common/provider_boundary.h"

namespace velmorn::brantis {
namespace {

constexpr std::size_t kDenselyGrown = 4 * kMostCorners; // beyond, the grid is grown thinly
constexpr std::size_t kBlurCorners = 40;                // that the blur is taken from

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
  const std::vector<GridCorner> found = fitFinally(search, grey, grid, kMostCorners);
  if (!fixAPlane(found)) return kTooFewCorners;

  corners.clear();
  for (const GridCorner& corner : found) corners.push_back(onBoard(corner, square.unit));
  return kFound;
}

} // namespace velmorn::brantis
