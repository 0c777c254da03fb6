// Simulation jobs: what `velmorn simulate` is to render.
#include "velmorn/simulate_job.h"

#include <algorithm>
#include <limits>
#include <map>

#include "velmorn/atomic_file.h"
#include "velmorn/board.h"
#include "velmorn/code_board.h"
#include "velmorn/printed_board.h"
#include "velmorn/simulate_job_cameras.h"
#include "velmorn/simulate_values.h"
#include "velmorn/tool_error.h"

namespace velmorn::tool {
namespace {

using nlohmann::json;

// In millimetres; a job in another unit has the same lengths.
constexpr double kDefaultHeight = 1200;
constexpr double kDefaultStep = 1;
constexpr double kDefaultDepthNoise = 0.5;
constexpr double kDefaultEdge = 15;

constexpr double kDefaultNoise = 1.5; // grey levels
constexpr double kDefaultBlur = 0.7;  // pixels
constexpr double kDefaultHoles = 0.001;
constexpr int kDefaultPairShots = 5;  // of the pairs along a conveyor
constexpr int kDefaultGroupShots = 8; // of all cameras around a platform
constexpr int kDefaultCodeShots = 3;

constexpr double kLongest = 1e6; // length unit
constexpr double kMostNoise = 50;
constexpr double kMostBlur = 10;
constexpr int kMostShots = 50;          // per group
constexpr std::size_t kMostGroups = 45; // pairs of ten cameras
constexpr int kMostCorners = 100;       // per side of a plain board
constexpr double kMostCounts = 60000;   // of the depth at the cameras' height
constexpr double kFewestCounts = 20;
constexpr double kWidestSpread = 10; // of the cameras' positions, heights

SimulatedKind kindFrom(const JsonObject& job) {
  if (!job.has("kind")) return SimulatedKind::kConveyor;
  const std::string kind = job.text("kind");
  if (kind != "conveyor" && kind != "platform") {
    job.fail("\"kind\" has to be \"conveyor\" or \"platform\"");
  }
  return kind == "conveyor" ? SimulatedKind::kConveyor : SimulatedKind::kPlatform;
}

std::string unitFrom(const JsonObject& job) { return job.has("unit") ? job.text("unit") : "mm"; }

// Units per millimetre.
double unitScale(const JsonObject& job, const std::string& unit) {
  static const std::map<std::string, double> scales = {
      {"mm", 1}, {"cm", 0.1}, {"m", 0.001}, {"in", 1 / 25.4}};
  const auto found = scales.find(unit);
  if (found == scales.end()) job.fail("\"unit\" has to be \"mm\", \"cm\", \"m\" or \"in\"");
  return found->second;
}

std::size_t cameraNamed(const JsonObject& object, const std::string& id, std::size_t cameras) {
  for (std::size_t i = 0; i < cameras; ++i) {
    if (simulatedId(i) == id) return i;
  }
  object.fail("there is no camera " + inQuotes(id) + ", they are " + inQuotes(simulatedId(0)) +
              " to " + inQuotes(simulatedId(cameras - 1)));
}

std::vector<std::size_t> groupFrom(const JsonObject& object, const json& ids, std::size_t cameras) {
  const bool isList = ids.is_array() && !ids.empty() &&
                      std::all_of(ids.begin(), ids.end(), [](auto& id) { return id.is_string(); });
  if (!isList) object.fail("every group has to be a list of camera ids");
  std::vector<std::size_t> group;
  for (const json& id : ids) {
    const std::size_t camera = cameraNamed(object, id.get<std::string>(), cameras);
    if (std::find(group.begin(), group.end(), camera) != group.end()) {
      object.fail("camera " + inQuotes(simulatedId(camera)) + " is twice in one group");
    }
    group.push_back(camera);
  }
  return group;
}

SimulatedShots shotsFrom(const JsonObject& board, int defaultShots, std::size_t cameras) {
  SimulatedShots shots;
  shots.shots = wholeNumberWithin(board, "shots", 1, kMostShots, defaultShots);
  shots.onlyGroups = board.flag("only_groups", false);
  if (!board.has("groups")) return shots;
  const json& groups = board.at("groups");
  if (!groups.is_array() || groups.empty() || groups.size() > kMostGroups) {
    board.fail("\"groups\" has to be 1 to 45 lists of camera ids");
  }
  for (const json& group : groups) shots.groups.push_back(groupFrom(board, group, cameras));
  return shots;
}

// The object under a key; one without keys when there is none.
const json& objectUnder(const JsonObject& job, const std::string& key) {
  static const json kNothing = json::object();
  return job.has(key) ? job.at(key) : kNothing;
}

SimulatedPlainBoard plainBoardFrom(const JsonObject& job, SimulatedKind kind, std::size_t cameras) {
  const int defaultShots =
      kind == SimulatedKind::kConveyor ? kDefaultPairShots : kDefaultGroupShots;
  const JsonObject object(objectUnder(job, "plain"), "\"plain\"",
                          {"board", "square", "shots", "groups", "only_groups"});
  SimulatedPlainBoard board;
  if (object.has("board")) {
    const auto sides = parseSides(object.text("board"), kMinBoardSide, kMostCorners);
    if (!sides) object.fail("\"board\" has to be inner corners such as 9x6, each 3 to 100");
    board.corners = {sides->width, sides->height};
  }
  if (object.has("square")) board.square = lengthUpTo(object, "square", kLongest, 0);
  board.shots = shotsFrom(object, defaultShots, cameras);
  return board;
}

SimulatedCodeBoard codeBoardFrom(const JsonObject& job, std::size_t cameras) {
  const JsonObject object(objectUnder(job, "data_code"), "\"data_code\"",
                          {"squares", "size", "shots", "groups", "only_groups"});
  SimulatedCodeBoard board;
  if (object.has("squares")) {
    const auto sides = parseSides(object.text("squares"), kMinCodeSquares, kMaxSquares);
    if (!sides) object.fail("\"squares\" has to be such as 40x16, each 2 to 200");
    board.squares = cv::Size(sides->width, sides->height);
  }
  if (object.has("size")) board.square = lengthUpTo(object, "size", kLongest, 0);
  board.shots = shotsFrom(object, kDefaultCodeShots, cameras);
  return board;
}

SimulatedDepth depthFrom(const JsonObject& job, double scale, double height) {
  const JsonObject object(objectUnder(job, "depth"), "\"depth\"",
                          {"step", "noise", "holes", "edge"});
  SimulatedDepth depth;
  depth.step = lengthUpTo(object, "step", kLongest, kDefaultStep * scale);
  depth.noise = numberWithin(object, "noise", 0, kLongest, kDefaultDepthNoise * scale);
  depth.holes = numberWithin(object, "holes", 0, 1, kDefaultHoles);
  depth.edge = numberWithin(object, "edge", 0, kLongest, kDefaultEdge * scale);
  const double counts = height / depth.step;
  if (counts < kFewestCounts || counts > kMostCounts) {
    object.fail("\"step\" makes the cameras' height " +
                std::to_string(static_cast<long long>(std::min(counts, 1e15))) +
                " counts; 20 to 60000 can be used");
  }
  return depth;
}

double meanHeight(const std::vector<SimulatedCamera>& cameras) {
  double sum = 0;
  for (const SimulatedCamera& camera : cameras) sum += camera.place->position[2];
  return sum / static_cast<double>(cameras.size());
}

void requireNear(const JsonObject& job, const SimulateJob& read) {
  for (const SimulatedCamera& camera : read.cameras) {
    const cv::Vec3d& position = camera.place->position;
    if (cv::norm(position) <= kWidestSpread * read.height) continue;
    job.fail("a camera is farther from the ground's middle than 10 times the cameras' mean height");
  }
}

void takeArrangement(const JsonObject& job, double scale, SimulateJob& read) {
  if (read.cameras.front().place) {
    for (const char* key : {"height", "spacing"}) {
      if (job.has(key)) job.fail(inQuotes(key) + " does not go with a list of cameras");
    }
    read.height = meanHeight(read.cameras);
    requireNear(job, read);
    return;
  }
  read.height = lengthUpTo(job, "height", kLongest, kDefaultHeight * scale);
  if (!job.has("spacing")) return;
  read.spacing = lengthUpTo(job, "spacing", kLongest, 0);
  if (*read.spacing > read.height) job.fail("\"spacing\" has to be at most the cameras' height");
}

SimulateJob jobFrom(const json& value, const SimulateOverrides& overrides) {
  std::vector<std::string> keys = {"kind",    "unit",  "seed", "base",  "cameras", "height",
                                   "spacing", "noise", "blur", "depth", "plain",   "data_code"};
  keys.insert(keys.end(), lensKeys().begin(), lensKeys().end());
  const JsonObject object(value, "", keys);
  SimulateJob job;
  job.kind = kindFrom(object);
  job.unit = unitFrom(object);
  const double scale = unitScale(object, job.unit);
  job.seed = wholeNumberWithin(object, "seed", 0, std::numeric_limits<int>::max(), 1);
  job.seed = overrides.seed.value_or(job.seed);
  job.cameras = simulatedCamerasFrom(object, overrides.cameras);
  const std::size_t cameras = job.cameras.size();
  if (object.has("base")) job.base = cameraNamed(object, object.text("base"), cameras);
  takeArrangement(object, scale, job);
  job.noise = numberWithin(object, "noise", 0, kMostNoise, kDefaultNoise);
  job.blur = numberWithin(object, "blur", 0, kMostBlur, kDefaultBlur);
  job.depth = depthFrom(object, scale, job.height);
  job.plain = plainBoardFrom(object, job.kind, cameras);
  job.code = codeBoardFrom(object, cameras);
  return job;
}

} // namespace

SimulateJob readSimulateJob(const std::string& path, const SimulateOverrides& overrides) {
  if (path.empty()) return jobFrom(json::object(), overrides);
  const std::string text = readWholeFile(path);
  try {
    return jobFrom(parseJson(text), overrides);
  } catch (const ToolError& error) {
    throw ToolError(path + ": " + error.what());
  }
}

std::string simulatedId(std::size_t camera) { return "cam" + std::to_string(camera + 1); }

} // namespace velmorn::tool
