// Which parts of a camera's image the board was seen in.
#include "velmorn/coverage.h"

#include <algorithm>
#include <cmath>

#include <opencv2/imgproc.hpp>

namespace velmorn::tool {
namespace {

cv::Size cellsOf(cv::Size image) {
  const auto shorter = [](int side, int longer) {
    return std::max(1, cvRound(static_cast<double>(kCoverageCells) * side / longer));
  };
  if (image.width >= image.height) return {kCoverageCells, shorter(image.height, image.width)};
  return {shorter(image.width, image.height), kCoverageCells};
}

// The hull in cells: (0, 0) is the image's outer corner. Pixels have (0, 0) at a centre.
std::vector<cv::Point2f> hullInCells(const ShotRecord& shot, cv::Size image, cv::Size cells) {
  std::vector<cv::Point2f> places;
  for (const cv::Point2d& corner : shot.corners) {
    const cv::Point2f place(static_cast<float>((corner.x + 0.5) * cells.width / image.width),
                            static_cast<float>((corner.y + 0.5) * cells.height / image.height));
    if (std::isfinite(place.x) && std::isfinite(place.y)) places.push_back(place);
  }
  std::vector<cv::Point2f> hull;
  if (places.size() > 2) cv::convexHull(places, hull);
  return hull;
}

void addHull(cv::Mat& shots, const std::vector<cv::Point2f>& hull) {
  for (int row = 0; row < shots.rows; ++row) {
    for (int column = 0; column < shots.cols; ++column) {
      const cv::Point2f centre(static_cast<float>(column) + 0.5F, static_cast<float>(row) + 0.5F);
      if (cv::pointPolygonTest(hull, centre, false) >= 0) ++shots.at<int>(row, column);
    }
  }
}

} // namespace

Coverage coverageOf(const CameraRecord& camera) {
  Coverage coverage;
  if (camera.imageSize.width <= 0 || camera.imageSize.height <= 0) return coverage;
  const cv::Size cells = cellsOf(camera.imageSize);
  coverage.shots = cv::Mat::zeros(cells, CV_32SC1);
  for (const ShotRecord& shot : camera.shots) {
    if (!shot.found()) continue;
    ++coverage.used;
    const std::vector<cv::Point2f> hull = hullInCells(shot, camera.imageSize, cells);
    if (hull.size() > 2) addHull(coverage.shots, hull);
  }
  coverage.percent = 100.0 * cv::countNonZero(coverage.shots) / cells.area();
  return coverage;
}

} // namespace velmorn::tool
