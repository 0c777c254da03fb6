// Result files: the outcome of a stitching run, for programs.
#include "velmorn/result_file.h"

#include <algorithm>

#include <nlohmann/json.hpp>

#include "velmorn/atomic_file.h"
#include "velmorn/json_object.h"
#include "velmorn/json_text.h"
#include "velmorn/pose.h"
#include "velmorn/tool_error.h"

namespace velmorn::tool {
namespace {

using Json = nlohmann::ordered_json;

Json cameraJson(const StitchedCamera& camera, bool isBase) {
  const cv::Vec3d position = translationOf(camera.place.baseFromCam);
  Json json;
  json["id"] = camera.id;
  json["isBase"] = isBase;
  json["parent"] = isBase ? Json() : Json(camera.place.parent);
  json["depth"] = camera.place.depth;
  json["imagesFound"] = camera.imagesFound;
  json["imagesTotal"] = camera.imagesTotal;
  json["imagesShared"] = camera.imagesShared;
  json["residual"] = camera.residual ? Json(*camera.residual) : Json();
  json["rotationDegrees"] = rotationDegrees(camera.place.baseFromCam);
  json["distanceToBase"] = cv::norm(position);
  json["baseFromCam"] = rowsOf(camera.place.baseFromCam);
  json["camFromBase"] = rowsOf(camera.place.camFromBase);
  json["libraryEntry"] = rowsOf(poseFrom(camera.libraryEntry));
  return json;
}

void describeBoard(const Rig& rig, Json& json) {
  if (rig.hasDataCodes) {
    json["board"] = "data-code";
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

std::string resultText(const Rig& rig, const StitchedRig& stitched) {
  Json json;
  json["libraryVersion"] = VELMORN64_VERSION;
  describeBoard(rig, json);
  json["base"] = stitched.cameras[stitched.base].id;
  json["cameras"] = Json::array();
  for (std::size_t i = 0; i < stitched.cameras.size(); ++i) {
    json["cameras"].push_back(cameraJson(stitched.cameras[i], i == stitched.base));
  }
  return fileText(json);
}

std::map<std::string, cv::Matx44d> readBaseFromCam(const std::string& path) {
  const std::string text = readWholeFile(path);
  try {
    const nlohmann::json result = parseJson(text);
    std::map<std::string, cv::Matx44d> poses;
    for (const auto& camera : result.at("cameras")) {
      poses[camera.at("id").get<std::string>()] = poseFromRows(camera.at("baseFromCam"));
    }
    return poses;
  } catch (const nlohmann::json::exception& error) {
    throw ToolError(path + ": " + error.what());
  } catch (const ToolError& error) {
    throw ToolError(path + ": " + error.what());
  }
}

} // namespace velmorn::tool
