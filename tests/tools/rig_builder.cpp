// Rig files and camera files for tests.
#include "tools/rig_builder.h"

#include <algorithm>
#include <sstream>

#include "support/temp_dir.h"

namespace velmorn::tool {

using nlohmann::json;

std::string cameraYaml(const std::string& coefficients, const std::string& matrix) {
  const auto commas = std::count(coefficients.begin(), coefficients.end(), ',');
  return "%YAML:1.0\n---\n"
         "image_width: 640\n"
         "image_height: 480\n"
         "camera_matrix: !!opencv-matrix\n"
         "   rows: 3\n   cols: 3\n   dt: d\n"
         "   data: [ " +
         matrix +
         " ]\n"
         "distortion_coefficients: !!opencv-matrix\n"
         "   rows: 1\n   cols: " +
         std::to_string(commas + 1) + "\n   dt: d\n   data: [ " + coefficients + " ]\n";
}

json rigCamera(const std::string& id, const std::string& intrinsics,
               const std::vector<std::string>& images) {
  return {{"id", id}, {"intrinsics", intrinsics}, {"images", images}};
}

json twoCameraRig() {
  return {{"board", "9x6"},
          {"square", 25},
          {"cameras",
           {rigCamera("a", "cam.yml", {"a0.png", "a1.png", "a2.png"}),
            rigCamera("b", "cam.yml", {"b0.png", "b1.png", "b2.png"})}}};
}

void writeTwoCameraFiles(const std::filesystem::path& folder) {
  writeFile(folder / "cam.yml", cameraYaml());
  for (const char* name : {"a0.png", "a1.png", "a2.png", "b0.png", "b1.png", "b2.png"}) {
    writeFile(folder / name, "");
  }
}

void writeRenderedRig(const std::filesystem::path& folder, const SyntheticRig& rig) {
  const ImagePathMap images = rig.writeImages(folder, {});
  const auto intrinsics = rig.intrinsicRecords();
  json cameras = json::array();
  for (const std::string& id : rig.ids) {
    std::ostringstream matrix;
    for (const double value : intrinsics.at(id).matrix)
      matrix << (matrix.str().empty() ? "" : ", ") << std::showpoint << value;
    writeFile(folder / (id + ".yml"), cameraYaml("0., 0., 0., 0., 0.", matrix.str()));
    cameras.push_back(rigCamera(id, id + ".yml", images.at(id)));
  }
  const json file = {
      {"board", std::to_string(rig.board.width) + "x" + std::to_string(rig.board.height)},
      {"square", rig.board.square},
      {"base", rig.ids.front()},
      {"cameras", cameras}};
  writeFile(folder / "rig.json", file.dump());
}

} // namespace velmorn::tool
