// What was found at the seams, for people and for programs.
#include "velmorn/seam_table.h"

#include <cstddef>
#include <sstream>

#include <nlohmann/json.hpp>

#include "velmorn/json_text.h"
#include "velmorn/text_table.h"
#include "velmorn64.h"

namespace velmorn::tool {
namespace {

constexpr std::size_t kTextColumns = 2;
constexpr int kDistanceDigits = 3;
constexpr const char* kNothing = "-";

double shareOf(const Seam& seam) {
  return static_cast<double>(seam.compared) / static_cast<double>(seam.inView);
}

std::string distanceText(double distance) {
  std::ostringstream text;
  text.precision(kDistanceDigits);
  text << distance;
  return text.str();
}

std::vector<std::string> rowOf(const Seam& seam, const std::vector<std::string>& ids) {
  const std::string first = shortened(ids[seam.first]);
  const std::string second = shortened(ids[seam.second]);
  if (!seam.overlaps()) return {first, second, "no overlap", kNothing, kNothing, kNothing};
  return {first,
          second,
          std::to_string(seam.compared),
          fixedText(100 * shareOf(seam), 1) + " %",
          seam.agrees() ? distanceText(seam.median) : kNothing,
          seam.agrees() ? distanceText(seam.percentile90) : kNothing};
}

nlohmann::ordered_json jsonOf(const Seam& seam, const std::vector<std::string>& ids) {
  nlohmann::ordered_json json;
  json["cameras"] = {ids[seam.first], ids[seam.second]};
  json["overlap"] = seam.overlaps();
  json["inView"] = seam.inView;
  json["compared"] = seam.compared;
  json["share"] = nullptr;
  json["median"] = nullptr;
  json["percentile90"] = nullptr;
  if (seam.overlaps()) json["share"] = shareOf(seam);
  if (!seam.agrees()) return json;
  json["median"] = seam.median;
  json["percentile90"] = seam.percentile90;
  return json;
}

} // namespace

std::string seamTable(const std::vector<Seam>& seams, const std::vector<std::string>& ids) {
  std::vector<std::vector<std::string>> rows = {{"seam", "", "points", "share", "median", "90 %"}};
  for (const Seam& seam : seams) rows.push_back(rowOf(seam, ids));
  return tableText(rows, kTextColumns);
}

std::string seamFileText(const std::vector<Seam>& seams, const std::vector<std::string>& ids) {
  nlohmann::ordered_json file;
  file["libraryVersion"] = VELMORN64_VERSION;
  file["seams"] = nlohmann::ordered_json::array();
  for (const Seam& seam : seams) file["seams"].push_back(jsonOf(seam, ids));
  return fileText(file);
}

} // namespace velmorn::tool
