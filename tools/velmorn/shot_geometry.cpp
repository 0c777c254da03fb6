// The board of a run in the images of a result file.
#include "velmorn/shot_geometry.h"

#include <algorithm>
#include <map>
#include <utility>

namespace velmorn::tool {
namespace {

std::vector<cv::Point> gridOf(const StitchRecord& run, const ShotRecord& shot) {
  if (run.hasDataCodes) return shot.grid;
  std::vector<cv::Point> grid;
  for (int row = 0; row < run.board.height; ++row)
    for (int column = 0; column < run.board.width; ++column) grid.emplace_back(column, row);
  return grid;
}

} // namespace

std::vector<cv::Point3f> placesOnBoard(const StitchRecord& run, const ShotRecord& shot) {
  std::vector<cv::Point3f> places;
  for (const cv::Point& place : gridOf(run, shot))
    places.emplace_back(static_cast<float>(place.x * run.square),
                        static_cast<float>(place.y * run.square), 0.0F);
  return places;
}

std::vector<cv::Vec3d> outermostPlaces(const StitchRecord& run, const ShotRecord& shot) {
  const std::vector<cv::Point> grid = gridOf(run, shot);
  if (grid.empty()) return {};
  const auto byX = [](const cv::Point& a, const cv::Point& b) { return a.x < b.x; };
  const auto byY = [](const cv::Point& a, const cv::Point& b) { return a.y < b.y; };
  const auto [left, right] = std::minmax_element(grid.begin(), grid.end(), byX);
  const auto [top, bottom] = std::minmax_element(grid.begin(), grid.end(), byY);
  std::vector<cv::Vec3d> places;
  for (const int x : {left->x, right->x})
    for (const int y : {top->y, bottom->y}) places.emplace_back(x * run.square, y * run.square, 0);
  return places;
}

double meanSquarePixels(const StitchRecord& run, const ShotRecord& shot) {
  const std::vector<cv::Point> grid = gridOf(run, shot);
  std::map<std::pair<int, int>, cv::Point2d> pixels;
  for (std::size_t i = 0; i < grid.size() && i < shot.corners.size(); ++i)
    pixels[{grid[i].x, grid[i].y}] = shot.corners[i];
  double sum = 0;
  int count = 0;
  for (const auto& [place, pixel] : pixels)
    for (const auto& next :
         {std::pair(place.first + 1, place.second), std::pair(place.first, place.second + 1)}) {
      const auto found = pixels.find(next);
      if (found == pixels.end()) continue;
      sum += cv::norm(found->second - pixel);
      ++count;
    }
  return count == 0 ? 0 : sum / count;
}

cv::Vec3d boardNormal(const ShotRecord& shot) {
  const cv::Matx44d& pose = shot.camFromBoard;
  return {pose(0, 2), pose(1, 2), pose(2, 2)};
}

std::vector<std::size_t> sharedPositions(const CameraRecord& a, const CameraRecord& b) {
  std::vector<std::size_t> shared;
  for (std::size_t j = 0; j < std::min(a.shots.size(), b.shots.size()); ++j)
    if (a.shots[j].found() && b.shots[j].found()) shared.push_back(j);
  return shared;
}

} // namespace velmorn::tool
