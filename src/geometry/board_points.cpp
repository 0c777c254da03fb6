// A chessboard's inner corners as points.
#include "geometry/board_points.h"

namespace velmorn {

std::vector<cv::Point3f> boardPoints(tagOzKSize patternSize, float squareSize) {
  std::vector<cv::Point3f> points;
  for (int r = 0; r < patternSize.height; ++r)
    for (int c = 0; c < patternSize.width; ++c)
      points.emplace_back(static_cast<float>(c) * squareSize, static_cast<float>(r) * squareSize,
                          0.0F);
  return points;
}

} // namespace velmorn
