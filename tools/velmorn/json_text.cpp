// How the tool writes JSON.
#include "velmorn/json_text.h"

#include <algorithm>

namespace velmorn::tool {
namespace {

using Json = nlohmann::ordered_json;

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

} // namespace

Json rowsOf(const cv::Matx44d& pose) {
  Json rows = Json::array();
  for (int row = 0; row < 4; ++row) {
    // Adding 0 turns the -0 that an inversion leaves into 0.
    rows.push_back({pose(row, 0) + 0, pose(row, 1) + 0, pose(row, 2) + 0, pose(row, 3) + 0});
  }
  return rows;
}

std::string fileText(const Json& json) { return prettyText(json, "") + "\n"; }

} // namespace velmorn::tool
