// Rig files and camera files for tests.
#ifndef VELMORN64_TESTS_TOOLS_RIG_BUILDER_H
#define VELMORN64_TESTS_TOOLS_RIG_BUILDER_H

#include <filesystem>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "support/synthetic_rig.h"

namespace velmorn::tool {

// A camera file in OpenCV's YAML form for images of 640x480.
std::string cameraYaml(const std::string& coefficients = "0.1, -0.2, 0.001, 0.002, 0.3",
                       const std::string& matrix = "500., 0., 320., 0., 510., 240., 0., 0., 1.");

// One camera of a rig file.
nlohmann::json rigCamera(const std::string& id, const std::string& intrinsics,
                         const std::vector<std::string>& images);

// A rig file of two cameras "a" and "b" with three images each ("a0.png" ...), a 9x6 board of
// squares 25 and no further keys.
nlohmann::json twoCameraRig();

// Writes the camera file "cam.yml" and the (empty) images that twoCameraRig names.
void writeTwoCameraFiles(const std::filesystem::path& folder);

// Renders the rig's images into the folder, with camera files "ID.yml" without distortion, and
// writes "rig.json" with the first camera as the base.
void writeRenderedRig(const std::filesystem::path& folder, const SyntheticRig& rig);

} // namespace velmorn::tool

#endif // VELMORN64_TESTS_TOOLS_RIG_BUILDER_H
