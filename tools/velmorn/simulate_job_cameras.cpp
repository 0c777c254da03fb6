// The cameras of a simulation job.
#include "velmorn/simulate_job_cameras.h"

#include <algorithm>
#include <cmath>

#include "velmorn/simulate_values.h"
#include "velmorn/tool_error.h"
#include "velmorn64.h"

namespace velmorn::tool {
namespace {

using nlohmann::json;

constexpr std::size_t kFewestCameras = 2;
constexpr std::size_t kDefaultCameras = 4;
constexpr int kLeastSide = 64;  // pixels
constexpr int kMostSide = 4096; // pixels
constexpr double kLeastField = 10;
constexpr double kMostField = 120;
constexpr double kLeastFocal = 16;
constexpr double kMostFocal = 65536;
constexpr double kMostCoefficient = 100;
constexpr double kFarthest = 1e7; // length unit
constexpr double kMostTilt = 60;
constexpr double kMostTurn = 180;

cv::Size imageSizeFrom(const JsonObject& object) {
  const std::vector<double> sides = object.numbers("image_size", 2);
  const bool usable = std::all_of(sides.begin(), sides.end(), [](double side) {
    return side >= kLeastSide && side <= kMostSide && side == std::floor(side);
  });
  if (!usable) {
    object.fail("\"image_size\" has to be two whole numbers, each " + std::to_string(kLeastSide) +
                " to " + std::to_string(kMostSide));
  }
  return {static_cast<int>(sides[0]), static_cast<int>(sides[1])};
}

std::vector<double> distortionFrom(const JsonObject& object) {
  const json& list = object.at("distortion");
  const std::size_t count = list.is_array() ? list.size() : 0;
  if (count != 4 && count != 5 && count != 8 && count != 12) {
    object.fail("\"distortion\" has to be a list of 4, 5, 8 or 12 numbers");
  }
  const std::vector<double> numbers = object.numbers("distortion", count);
  const bool usable = std::all_of(numbers.begin(), numbers.end(), [](double number) {
    return std::abs(number) <= kMostCoefficient;
  });
  if (!usable) object.fail("\"distortion\" has a number beyond 100");
  return numbers;
}

SimulatedLens lensFrom(const JsonObject& object, SimulatedLens lens) {
  if (object.has("focal") && object.has("field_of_view")) {
    object.fail("\"focal\" and \"field_of_view\" say the same; give one");
  }
  if (object.has("image_size")) lens.imageSize = imageSizeFrom(object);
  if (object.has("field_of_view")) lens.focal.reset();
  lens.fieldOfView =
      numberWithin(object, "field_of_view", kLeastField, kMostField, lens.fieldOfView);
  if (object.has("focal")) lens.focal = numberWithin(object, "focal", kLeastFocal, kMostFocal, 0);
  if (object.has("distortion")) lens.distortion = distortionFrom(object);
  return lens;
}

SimulatedPlace placeFrom(const JsonObject& object) {
  SimulatedPlace place;
  const std::vector<double> position = object.numbers("position", 3);
  place.position = cv::Vec3d(position.data());
  if (cv::norm(place.position, cv::NORM_INF) > kFarthest || place.position[2] <= 0) {
    object.fail("\"position\" has to be x, y, z, each at most 10000000, with z above 0");
  }
  if (object.has("tilt")) {
    const std::vector<double> tilt = object.numbers("tilt", 2);
    if (std::max(std::abs(tilt[0]), std::abs(tilt[1])) > kMostTilt) {
      object.fail("\"tilt\" has to be two angles of -60 to 60");
    }
    place.tiltAlong = tilt[0];
    place.tiltAcross = tilt[1];
  }
  place.turn = numberWithin(object, "turn", -kMostTurn, kMostTurn, 0);
  return place;
}

SimulatedCamera listedCamera(const json& entry, std::size_t index, const SimulatedLens& lens) {
  std::vector<std::string> keys = {"position", "tilt", "turn"};
  keys.insert(keys.end(), lensKeys().begin(), lensKeys().end());
  const JsonObject object(entry, "camera " + std::to_string(index + 1), keys);
  return {lensFrom(object, lens), placeFrom(object)};
}

void requireCount(const JsonObject& job, std::size_t count) {
  if (count >= kFewestCameras && count <= kMaxStitchCameras) return;
  job.fail("a rig has 2 to " + std::to_string(kMaxStitchCameras) + " cameras, not " +
           std::to_string(count));
}

} // namespace

const std::vector<std::string>& lensKeys() {
  static const std::vector<std::string> keys = {"image_size", "field_of_view", "focal",
                                                "distortion"};
  return keys;
}

std::vector<SimulatedCamera> simulatedCamerasFrom(const JsonObject& job,
                                                  std::optional<std::size_t> count) {
  const SimulatedLens lens = lensFrom(job, SimulatedLens());
  const bool isList = job.has("cameras") && job.at("cameras").is_array();
  if (!isList) {
    const int number = wholeNumberWithin(job, "cameras", kFewestCameras, kMaxStitchCameras,
                                         static_cast<int>(kDefaultCameras));
    const std::size_t used = count.value_or(static_cast<std::size_t>(number));
    requireCount(job, used);
    return std::vector<SimulatedCamera>(used, {lens, std::nullopt});
  }
  const json& entries = job.at("cameras");
  requireCount(job, entries.size());
  if (count) job.fail("\"cameras\" is a list, which --cameras does not go with");
  std::vector<SimulatedCamera> cameras;
  for (std::size_t i = 0; i < entries.size(); ++i) {
    cameras.push_back(listedCamera(entries[i], i, lens));
  }
  return cameras;
}

} // namespace velmorn::tool
