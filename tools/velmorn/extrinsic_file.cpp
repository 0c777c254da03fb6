// Files that hold one extrinsic.
#include "velmorn/extrinsic_file.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "velmorn/atomic_file.h"
#include "velmorn/json_object.h"
#include "velmorn/json_text.h"
#include "velmorn/pose.h"
#include "velmorn/tool_error.h"

namespace velmorn::tool {
namespace {

using nlohmann::json;

constexpr double kZeroTolerance = 1e-9;     // for the last row
constexpr double kLeastDeterminant = 1e-10; // what the library can still invert
constexpr double kRotationTolerance = 1e-4; // rows come in single precision or rounded by hand
const std::string kFromCam = "FromCam";

// The numbers of a flat list or of a list of rows.
std::vector<double> numbersIn(const json& value) {
  std::vector<double> numbers;
  if (!value.is_array()) return numbers;
  for (const json& entry : value) {
    if (entry.is_number()) numbers.push_back(entry.get<double>());
    if (!entry.is_array() || entry.size() != 4) continue;
    for (const json& element : entry) {
      if (element.is_number()) numbers.push_back(element.get<double>());
    }
  }
  const bool isComplete = numbers.size() == 16 && (value.size() == 16 || value.size() == 4);
  return isComplete ? numbers : std::vector<double>();
}

void requireTransform(const tagOzKCamExtrinsic& extrinsic) {
  const cv::Matx44d pose = poseFrom(extrinsic);
  if (!isFinitePose(pose)) throw ToolError("\"extrinsic\" holds a number that is not finite");
  const double lastRow[4] = {0, 0, 0, 1};
  for (int column = 0; column < 4; ++column) {
    if (std::abs(pose(3, column) - lastRow[column]) > kZeroTolerance) {
      throw ToolError("the last row of \"extrinsic\" is not 0 0 0 1");
    }
  }
  if (std::abs(cv::determinant(pose.get_minor<3, 3>(0, 0))) < kLeastDeterminant) {
    throw ToolError("the rotation of \"extrinsic\" cannot be inverted");
  }
}

std::string directionIn(const json& file) {
  const auto found = file.find("direction");
  if (found == file.end()) return "planeFromCam";
  const std::string direction = found->is_string() ? found->get<std::string>() : found->dump();
  const bool isFromCam =
      direction.size() > kFromCam.size() &&
      direction.compare(direction.size() - kFromCam.size(), kFromCam.size(), kFromCam) == 0;
  if (!isFromCam || oneLine(direction) != direction) {
    throw ToolError("\"direction\" is " + direction + ", a name that ends in " + kFromCam +
                    " is wanted, such as planeFromCam");
  }
  return direction;
}

NamedExtrinsic extrinsicIn(const json& file) {
  if (!file.is_object()) throw ToolError("an object { } is wanted");
  if (!file.contains("extrinsic")) throw ToolError("key \"extrinsic\" is missing");
  const std::vector<double> numbers = numbersIn(file["extrinsic"]);
  if (numbers.empty()) throw ToolError("\"extrinsic\" has to be 16 numbers, or 4 rows of 4");
  NamedExtrinsic named;
  named.direction = directionIn(file);
  std::copy(numbers.begin(), numbers.end(), named.extrinsic.data);
  requireTransform(named.extrinsic);
  return named;
}

} // namespace

NamedExtrinsic readExtrinsicFile(const std::string& path) {
  const std::string text = readWholeFile(path);
  try {
    return extrinsicIn(parseJson(text));
  } catch (const ToolError& error) {
    throw ToolError(path + ": " + error.what());
  }
}

nlohmann::ordered_json extrinsicJson(const NamedExtrinsic& named) {
  nlohmann::ordered_json file;
  file["libraryVersion"] = VELMORN64_VERSION;
  file["direction"] = named.direction;
  file["extrinsic"] = rowsOf(poseFrom(named.extrinsic));
  return file;
}

bool isRigid(const tagOzKCamExtrinsic& extrinsic) {
  const cv::Matx33d R = poseFrom(extrinsic).get_minor<3, 3>(0, 0);
  return cv::norm(R * R.t(), cv::Matx33d::eye(), cv::NORM_INF) < kRotationTolerance &&
         cv::determinant(R) > 0;
}

} // namespace velmorn::tool
