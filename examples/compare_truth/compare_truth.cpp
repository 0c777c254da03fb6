// Compares the result of `velmorn stitch` with the truth of a simulated rig.
//
//   velmorn simulate -o rig
//   velmorn stitch rig/rig.json -o rig/result.json
//   compare_truth rig/truth.json rig/result.json --max-degrees 0.05 --max-percent 0.1
//
// Both are brought into the frame of the truth's base camera. Exit status 0, 1 when a camera is off
// by more than a limit or a file cannot be used, 2 for a wrong command line.
#include <CLI/CLI.hpp>
#include <cmath>
#include <iomanip>
#include <iostream>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>

#include "velmorn/atomic_file.h"
#include "velmorn/json_object.h"
#include "velmorn/pose.h"
#include "velmorn/result_file.h"
#include "velmorn/tool_error.h"

namespace {

using namespace velmorn::tool;
using PosesById = std::map<std::string, cv::Matx44d>;

struct Limits {
  std::optional<double> degrees;
  std::optional<double> length;  // the files' unit
  std::optional<double> percent; // of the camera's distance to the base
};

struct Difference {
  double degrees = 0;
  double length = 0;
  double percent = 0; // 0 for the base
};

std::string baseOf(const std::string& truthPath) {
  const nlohmann::json truth = parseJson(readWholeFile(truthPath));
  const auto base = truth.find("base");
  if (base == truth.end() || !base->is_string()) throw ToolError(truthPath + ": no \"base\"");
  return base->get<std::string>();
}

const cv::Matx44d& poseOf(const PosesById& poses, const std::string& id, const std::string& path) {
  const auto found = poses.find(id);
  if (found == poses.end()) throw ToolError("camera " + inQuotes(id) + " is not in " + path);
  return found->second;
}

// The angle by its sine: an arc cosine loses the small ones.
double smallAngleDegrees(const cv::Matx44d& pose) {
  const cv::Vec3d twice(pose(2, 1) - pose(1, 2), pose(0, 2) - pose(2, 0), pose(1, 0) - pose(0, 1));
  const double sine = cv::norm(twice) / 2, cosine = (pose(0, 0) + pose(1, 1) + pose(2, 2) - 1) / 2;
  return std::atan2(sine, cosine) * 180 / CV_PI;
}

Difference differenceOf(const cv::Matx44d& truth, const cv::Matx44d& found) {
  Difference difference;
  difference.degrees = smallAngleDegrees(inversePose(truth) * found);
  difference.length = cv::norm(translationOf(found) - translationOf(truth));
  const double distance = cv::norm(translationOf(truth));
  if (distance > 0) difference.percent = 100 * difference.length / distance;
  return difference;
}

bool isWithin(const Difference& difference, const Limits& limits) {
  // A comparison with NaN is false.
  const auto within = [](double value, const std::optional<double>& limit) {
    return std::isfinite(value) && (!limit || value <= *limit);
  };
  return within(difference.degrees, limits.degrees) && within(difference.length, limits.length) &&
         within(difference.percent, limits.percent);
}

void printRow(const std::string& id, const Difference& difference, bool within) {
  std::cout << std::left << std::setw(10) << oneLine(id) << std::right << std::fixed
            << std::setprecision(4) << std::setw(10) << difference.degrees << std::setw(13)
            << difference.length << std::setw(11) << difference.percent << (within ? "" : "  off")
            << '\n';
}

// Returns whether all cameras are within the limits.
bool compare(const std::string& truthPath, const std::string& resultPath, const Limits& limits) {
  const PosesById truth = readBaseFromCam(truthPath), result = readBaseFromCam(resultPath);
  const std::string base = baseOf(truthPath);
  const cv::Matx44d baseFromResultBase = inversePose(poseOf(result, base, resultPath));
  const cv::Matx44d baseFromTruthBase = inversePose(poseOf(truth, base, truthPath));
  bool allWithin = true;
  std::cout << "camera      degrees       length    percent\n";
  for (const auto& [id, truthBaseFromCam] : truth) {
    const cv::Matx44d found = baseFromResultBase * poseOf(result, id, resultPath);
    const Difference difference = differenceOf(baseFromTruthBase * truthBaseFromCam, found);
    const bool within = isWithin(difference, limits);
    printRow(id, difference, within);
    allWithin = allWithin && within;
  }
  return allWithin;
}

} // namespace

int main(int argc, char** argv) {
  std::string truth, result;
  Limits limits;
  CLI::App app("Compares a stitching result with the truth of a simulated rig");
  app.add_option("truth", truth, "truth.json of velmorn simulate")->required();
  app.add_option("result", result, "result.json of velmorn stitch")->required();
  app.add_option("--max-degrees", limits.degrees, "Largest rotation off")
      ->check(CLI::PositiveNumber);
  app.add_option("--max-length", limits.length, "Largest distance off, in the files' unit")
      ->check(CLI::PositiveNumber);
  app.add_option("--max-percent", limits.percent,
                 "The same, in percent of the distance to the base")
      ->check(CLI::PositiveNumber);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : 2;
  }
  try {
    if (compare(truth, result, limits)) return 0;
    std::cerr << "compare_truth: a camera is off by more than the limits\n";
  } catch (const std::exception& error) {
    std::cerr << "compare_truth: " << oneLine(error.what()) << '\n';
  }
  return 1;
}
