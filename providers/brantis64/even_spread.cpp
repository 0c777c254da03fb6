// A choice of corners spread evenly over the grid.
#include "brantis64/even_spread.h"

#include <algorithm>
#include <limits>

namespace velmorn::brantis {
std::vector<GridCorner> evenSpread(std::vector<GridCorner> corners, std::size_t most) {
  std::sort(corners.begin(), corners.end(), rowsFirst);
  if (corners.size() <= most) return corners;

  std::vector<int> nearest(corners.size(), std::numeric_limits<int>::max());
  std::vector<std::size_t> chosen;
  std::size_t next = 0;
  while (chosen.size() < most) {
    chosen.push_back(next);
    const GridPoint from = corners[next].at;
    for (std::size_t i = 0; i < corners.size(); ++i)
      nearest[i] = std::min(nearest[i], distance2(from, corners[i].at));
    next = static_cast<std::size_t>(std::max_element(nearest.begin(), nearest.end()) -
                                    nearest.begin());
  }
  std::sort(chosen.begin(), chosen.end());
  std::vector<GridCorner> result;
  for (std::size_t i : chosen) result.push_back(corners[i]);
  return result;
}

} // namespace velmorn::brantis
