// Jobs of aerial views for tests.
#include "tools/aerial_builder.h"

#include <opencv2/imgcodecs.hpp>

#include "support/temp_dir.h"
#include "tools/cloud_files.h"
#include "tools/rig_builder.h"

namespace velmorn::tool {

using nlohmann::json;

std::string rowCameraYaml() {
  const std::string text = cameraYaml("0., 0., 0., 0.", "100., 0., 2., 0., 100., 0., 0., 0., 1.");
  return with(with(text, "640", "5"), "480", "1");
}

cv::Mat depthRow(std::uint16_t depth) { return cv::Mat(1, 5, CV_16UC1, cv::Scalar(depth)); }

json twoCameraJob() {
  return {{"region", {-1.5, -0.5, 1.5, 0.5}},
          {"resolution", 1},
          {"result", "result.json"},
          {"cameras",
           {{{"id", "a"}, {"depth", "a.png"}, {"intrinsics", "row.yml"}},
            {{"id", "b"}, {"depth", "b.png"}, {"intrinsics", "row.yml"}}}}};
}

void writeTwoCameraJobFiles(const std::filesystem::path& folder) {
  writeFile(folder / "row.yml", rowCameraYaml());
  cv::imwrite((folder / "a.png").string(), depthRow(100));
  cv::imwrite((folder / "b.png").string(), depthRow(50));
  // The base is turned by a quarter turn about z and moved against "a".
  const json baseFromA = {{0, -1, 0, 5}, {1, 0, 0, 6}, {0, 0, 1, 7}, {0, 0, 0, 1}};
  const json baseFromB = {{0, -1, 0, 5}, {1, 0, 0, 7.2}, {0, 0, 1, 7}, {0, 0, 0, 1}};
  const json result = {
      {"cameras",
       {{{"id", "b"}, {"baseFromCam", baseFromB}}, {{"id", "a"}, {"baseFromCam", baseFromA}}}}};
  writeFile(folder / "result.json", result.dump());
}

} // namespace velmorn::tool
