// Result files: the outcome of a stitching run, for programs.
#include "velmorn/result_file.h"

#include <algorithm>
#include <cmath>
#include <filesystem>

#include <nlohmann/json.hpp>

#include "velmorn/atomic_file.h"
#include "velmorn/json_object.h"
#include "velmorn/json_text.h"
#include "velmorn/pose.h"
#include "velmorn/tool_error.h"

namespace velmorn::tool {
namespace {

using Json = nlohmann::ordered_json;

constexpr double kPixelDigits = 1e4; // corners are written to four places

namespace fs = std::filesystem;

fs::path wholePath(const fs::path& path) { return fs::absolute(path).lexically_normal(); }

// The path as seen from the folder, whether it exists or not.
std::string seenFrom(const fs::path& folder, const std::string& path) {
  if (path.empty()) return path;
  return wholePath(path).lexically_proximate(wholePath(folder.empty() ? "." : folder)).string();
}

Json sizeJson(cv::Size size) {
  if (size.area() == 0) return Json();
  return Json{size.width, size.height};
}

Json intrinsicsJson(const RigCamera& camera, const fs::path& folder) {
  const double* m = camera.model.intrinsic.matrix;
  Json json;
  json["file"] = seenFrom(folder, camera.intrinsicsPath);
  json["imageSize"] = sizeJson(camera.model.imageSize);
  json["matrix"] = {{m[0], m[1], m[2]}, {m[3], m[4], m[5]}, {m[6], m[7], m[8]}};
  json["distortion"] = camera.model.distortion.coeffs;
  return json;
}

double rounded(double pixels) { return std::round(pixels * kPixelDigits) / kPixelDigits; }

Json shotJson(const ShotRecord& shot, const fs::path& folder) {
  Json json;
  json["image"] = seenFrom(folder, shot.image);
  json["outcome"] = shot.outcome;
  json["detail"] = shot.detail;
  if (!shot.found()) return json;
  json["reprojectionError"] = shot.reprojectionError;
  json["camFromBoard"] = rowsOf(shot.camFromBoard);
  json["corners"] = Json::array();
  for (const cv::Point2d& corner : shot.corners) {
    json["corners"].push_back(rounded(corner.x));
    json["corners"].push_back(rounded(corner.y));
  }
  if (shot.grid.empty()) return json;
  json["grid"] = Json::array();
  for (const cv::Point& place : shot.grid) {
    json["grid"].push_back(place.x);
    json["grid"].push_back(place.y);
  }
  return json;
}

void addShots(const CameraShots& shots, const fs::path& folder, Json& json) {
  json["imageSize"] = sizeJson(shots.imageSize);
  json["shots"] = Json::array();
  for (const ShotRecord& shot : shots.shots) json["shots"].push_back(shotJson(shot, folder));
}

// All null for a camera without a place.
void addPlace(const StitchedCamera& camera, bool isBase, Json& json) {
  const bool isLinked = camera.isLinked;
  const CameraPlace& place = camera.place;
  json["residual"] = isLinked && camera.residual ? Json(*camera.residual) : Json();
  json["rotationDegrees"] = isLinked ? Json(rotationDegrees(place.baseFromCam)) : Json();
  json["distanceToBase"] = isLinked ? Json(cv::norm(translationOf(place.baseFromCam))) : Json();
  json["baseFromCam"] = isLinked ? rowsOf(place.baseFromCam) : Json();
  json["camFromBase"] = isLinked ? rowsOf(place.camFromBase) : Json();
  json["libraryEntry"] = isLinked ? rowsOf(poseFrom(camera.libraryEntry)) : Json();
  if (isBase || !isLinked) json["parent"] = Json();
}

Json cameraJson(const StitchedCamera& camera, bool isBase) {
  Json json;
  json["id"] = camera.id;
  json["isBase"] = isBase;
  json["parent"] = camera.place.parent;
  json["depth"] = camera.place.depth;
  json["imagesFound"] = camera.imagesFound;
  json["imagesTotal"] = camera.imagesTotal;
  json["imagesShared"] = camera.imagesShared;
  addPlace(camera, isBase, json);
  return json;
}

void describeBoard(const Rig& rig, float square, Json& json) {
  if (rig.hasDataCodes) {
    json["board"] = "data-code";
    json["square"] = square;
    json["minCorners"] = rig.minCorners;
    return;
  }
  json["board"] = {
      {"columns", rig.board.width}, {"rows", rig.board.height}, {"square", rig.square}};
  json["minImages"] = rig.minImages;
}

cv::Matx44d poseFromRows(const nlohmann::json& rows) {
  const auto values = rows.get<std::vector<std::vector<double>>>();
  const bool complete =
      values.size() == 4 &&
      std::all_of(values.begin(), values.end(), [](auto& row) { return row.size() == 4; });
  if (!complete) throw ToolError("\"baseFromCam\" has to be 4 rows of 4 numbers");
  cv::Matx44d pose;
  for (int row = 0; row < 4; ++row) {
    for (int column = 0; column < 4; ++column) {
      pose(row, column) = values[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)];
    }
  }
  return pose;
}

} // namespace

std::string resultText(const Rig& rig, const StitchedRig& stitched, const std::string& path,
                       const std::string& error) {
  const fs::path folder = fs::path(path).parent_path();
  const bool hasBase = !stitched.cameras.empty() && stitched.cameras[stitched.base].isLinked;
  Json json;
  json["libraryVersion"] = VELMORN64_VERSION;
  if (!error.empty()) json["error"] = error;
  describeBoard(rig, stitched.square, json);
  json["base"] = hasBase ? Json(stitched.cameras[stitched.base].id) : Json();
  json["cameras"] = Json::array();
  for (std::size_t i = 0; i < stitched.cameras.size(); ++i) {
    const StitchedCamera& camera = stitched.cameras[i];
    Json entry = cameraJson(camera, hasBase && i == stitched.base);
    if (i < rig.cameras.size()) entry["intrinsics"] = intrinsicsJson(rig.cameras[i], folder);
    const auto shots = stitched.shots.find(camera.id);
    if (shots != stitched.shots.end()) addShots(shots->second, folder, entry);
    json["cameras"].push_back(entry);
  }
  return fileText(json);
}

std::string failedResultPath(const std::string& path) {
  const fs::path whole(path);
  return (whole.parent_path() / (whole.stem().string() + "-failed.json")).string();
}

std::map<std::string, cv::Matx44d> readBaseFromCam(const std::string& path) {
  const std::string text = readWholeFile(path);
  try {
    const nlohmann::json result = parseJson(text);
    std::map<std::string, cv::Matx44d> poses;
    for (const auto& camera : result.at("cameras")) {
      const auto id = camera.at("id").get<std::string>();
      if (camera.at("baseFromCam").is_null())
        throw ToolError("camera " + inQuotes(id) + " has no place, the run failed");
      poses[id] = poseFromRows(camera.at("baseFromCam"));
    }
    return poses;
  } catch (const nlohmann::json::exception& error) {
    throw ToolError(path + ": " + error.what());
  } catch (const ToolError& error) {
    throw ToolError(path + ": " + error.what());
  }
}

} // namespace velmorn::tool
