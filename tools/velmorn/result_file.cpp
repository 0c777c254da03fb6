// Result files: the outcome of a stitching run, for programs.
#include "velmorn/result_file.h"

#include <algorithm>

#include <nlohmann/json.hpp>

#include "velmorn/atomic_file.h"
#include "velmorn/json_object.h"
#include "velmorn/pose.h"
#include "velmorn/tool_error.h"

namespace velmorn::tool {
namespace {

using Json = nlohmann::ordered_json;

Json rowsOf(const cv::Matx44d& pose) {
  Json rows = Json::array();
  for (int row = 0; row < 4; ++row) {
    // Adding 0 turns the -0 that an inversion leaves into 0.
    rows.push_back({pose(row, 0) + 0, pose(row, 1) + 0, pose(row, 2) + 0, pose(row, 3) + 0});
  }
  return rows;
}

Json cameraJson(const StitchedCamera& camera, bool isBase) {
  const cv::Vec3d position = translationOf(camera.place.baseFromCam);
  Json json;
  json["id"] = camera.id;
  json["isBase"] = isBase;
  json["parent"] = isBase ? Json() : Json(camera.place.parent);
  json["depth"] = camera.place.depth;
  json["imagesFound"] = camera.imagesFound;
  json["imagesTotal"] = camera.imagesTotal;
  json["residual"] = camera.residual;
  json["rotationDegrees"] = rotationDegrees(camera.place.baseFromCam);
  json["distanceToBase"] = cv::norm(position);
  json["baseFromCam"] = rowsOf(camera.place.baseFromCam);
  json["camFromBase"] = rowsOf(camera.place.camFromBase);
  json["libraryEntry"] = rowsOf(poseFrom(camera.libraryEntry));
  return json;
}

bool isFlat(const Json& json) {
  return std::none_of(json.begin(), json.end(), [](const Json& v) { return v.is_structured(); });
}

std::string oneLineText(const Json& json) {
  // A name that is not UTF-8 cannot stand in JSON; it is shown with replacement characters.
  std::string text = json.dump(-1, ' ', false, Json::error_handler_t::replace);
  if (!json.is_array()) return text;
  text = "[";
  for (const Json& value : json) text += (text.size() > 1 ? ", " : "") + oneLineText(value);
  return text + "]";
}

// Indented, but with a list of plain values on one line.
std::string prettyText(const Json& json, const std::string& indent) {
  if (!json.is_structured() || (json.is_array() && isFlat(json))) return oneLineText(json);
  const std::string inner = indent + "  ";
  std::string text;
  for (const auto& item : json.items()) {
    text += (text.empty() ? "\n" : ",\n") + inner;
    if (json.is_object()) text += oneLineText(Json(item.key())) + ": ";
    text += prettyText(item.value(), inner);
  }
  text += "\n" + indent;
  return json.is_object() ? "{" + text + "}" : "[" + text + "]";
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
  json["board"] = {
      {"columns", rig.board.width}, {"rows", rig.board.height}, {"square", rig.square}};
  json["minImages"] = rig.minImages;
  json["base"] = stitched.cameras[stitched.base].id;
  json["cameras"] = Json::array();
  for (std::size_t i = 0; i < stitched.cameras.size(); ++i) {
    json["cameras"].push_back(cameraJson(stitched.cameras[i], i == stitched.base));
  }
  return prettyText(json, "") + "\n";
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
