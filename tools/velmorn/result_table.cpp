// The outcome of a stitching run, for people.
#include "velmorn/result_table.h"

#include <cstddef>
#include <vector>

#include "velmorn/pose.h"
#include "velmorn/text_table.h"

namespace velmorn::tool {
namespace {

constexpr std::size_t kTextColumns = 2;

std::vector<std::string> rowOf(const StitchedCamera& camera, bool isBase) {
  const cv::Vec3d position = translationOf(camera.place.baseFromCam);
  return {shortened(camera.id),
          isBase ? "(base)" : "to " + shortened(camera.place.parent),
          camera.residual ? fixedText(static_cast<double>(*camera.residual), 4) : "-",
          fixedText(rotationDegrees(camera.place.baseFromCam), 3),
          fixedText(position[0], 3),
          fixedText(position[1], 3),
          fixedText(position[2], 3),
          fixedText(cv::norm(position), 3)};
}

} // namespace

std::string resultTable(const StitchedRig& stitched) {
  std::vector<std::vector<std::string>> rows = {
      {"camera", "linked", "residual", "rotation [deg]", "x", "y", "z", "distance"}};
  for (std::size_t i = 0; i < stitched.cameras.size(); ++i) {
    rows.push_back(rowOf(stitched.cameras[i], i == stitched.base));
  }
  return tableText(rows, kTextColumns);
}

} // namespace velmorn::tool
