// How blurred the image is.
#include "brantis64/blur_estimate.h"

#include <algorithm>
#include <vector>

#include "brantis64/corner_prediction.h"
#include "brantis64/window_choice.h"

namespace velmorn::brantis {

double estimateBlur(CornerSearch& search, const CornerGrid& grid, std::size_t most) {
  const std::vector<GridCorner>& corners = grid.corners();
  const std::size_t step =
      std::max<std::size_t>(1, corners.size() / std::max<std::size_t>(1, most));
  std::vector<double> blurs;
  for (std::size_t i = 0; i < corners.size(); i += step) {
    CornerTask task;
    if (!chooseWindow(grid, corners[i], search.blur(), task)) continue;
    task.fitsBlur = true;
    CornerFit fit;
    if (search.fitter().fit(task, fit) && fit.correlation >= kMinCorrelation)
      blurs.push_back(fit.blur);
  }
  if (blurs.empty()) return search.blur();
  const auto middle = blurs.begin() + static_cast<std::ptrdiff_t>(blurs.size() / 2);
  std::nth_element(blurs.begin(), middle, blurs.end());
  return *middle;
}

} // namespace velmorn::brantis
