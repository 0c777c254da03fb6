// What a result file says about its run, for the commands that explain and show it.
#include "velmorn/stitch_record.h"

#include <algorithm>
#include <cmath>
#include <filesystem>

#include "velmorn/atomic_file.h"
#include "velmorn/board.h"
#include "velmorn/image_list.h"
#include "velmorn/json_object.h"
#include "velmorn/pose.h"
#include "velmorn/tool_error.h"

namespace velmorn::tool {
namespace {

using nlohmann::json;

constexpr double kRotationTolerance = 1e-4; // of the product with the transposed; rounded by hand
constexpr int kMaxImageSide = 1 << 20;
constexpr std::size_t kMaxBoardCorners = 1000; // per row and column
constexpr std::size_t kMaxCameras = kMaxStitchCameras;

bool has(const json& object, const char* key) {
  return object.contains(key) && !object.at(key).is_null();
}

double finite(const json& value) {
  const double number = value.get<double>();
  if (!std::isfinite(number)) throw ToolError("a number is not finite");
  return number;
}

std::vector<double> numbersIn(const json& list, std::size_t count, const std::string& key) {
  std::vector<double> numbers;
  for (const json& value : list.get<std::vector<json>>()) numbers.push_back(finite(value));
  if (count != 0 && numbers.size() != count)
    throw ToolError(inQuotes(key) + " has to be " + std::to_string(count) + " numbers");
  return numbers;
}

// Rows of equally many numbers, one after another.
std::vector<double> rowsIn(const json& rows, std::size_t side, const std::string& key) {
  std::vector<double> numbers;
  const auto list = rows.get<std::vector<json>>();
  if (list.size() != side)
    throw ToolError(inQuotes(key) + " has to be " + std::to_string(side) + " rows");
  for (const json& row : list)
    for (const double number : numbersIn(row, side, key)) numbers.push_back(number);
  return numbers;
}

cv::Matx44d poseIn(const json& rows, const std::string& key) {
  const cv::Matx44d pose(rowsIn(rows, 4, key).data());
  const cv::Matx33d R = pose.get_minor<3, 3>(0, 0);
  const bool isRigid = cv::norm(R * R.t() - cv::Matx33d::eye()) < kRotationTolerance &&
                       cv::determinant(R) > 0 && pose.row(3) == cv::Matx<double, 1, 4>(0, 0, 0, 1);
  if (!isRigid) throw ToolError(inQuotes(key) + " is no rigid transform");
  return pose;
}

std::size_t countIn(const json& object, const char* key) {
  if (!has(object, key)) return 0;
  const double count = finite(object.at(key));
  if (count < 0 || count > kMaxImageSide) throw ToolError(inQuotes(key) + " is out of range");
  return static_cast<std::size_t>(count);
}

cv::Size sizeIn(const json& object, const char* key) {
  if (!has(object, key)) return {};
  const std::vector<double> sides = numbersIn(object.at(key), 2, key);
  for (const double side : sides)
    if (side < 1 || side > kMaxImageSide) throw ToolError(inQuotes(key) + " is out of range");
  return {static_cast<int>(sides[0]), static_cast<int>(sides[1])};
}

IntrinsicsRecord intrinsicsIn(const json& object, const std::string& folder) {
  IntrinsicsRecord record;
  record.file = pathIn(folder, object.at("file").get<std::string>());
  record.model.imageSize = sizeIn(object, "imageSize");
  const std::vector<double> matrix = rowsIn(object.at("matrix"), 3, "matrix");
  if (matrix[0] <= 0 || matrix[4] <= 0)
    throw ToolError("the focal lengths of \"matrix\" have to be above 0");
  std::copy(matrix.begin(), matrix.end(), record.model.intrinsic.matrix);
  tagOzKCamDistortion& distortion = record.model.distortion;
  const auto coefficients =
      numbersIn(object.at("distortion"), std::size(distortion.coeffs), "distortion");
  std::copy(coefficients.begin(), coefficients.end(), distortion.coeffs);
  return record;
}

// x and y in turn.
template <typename Point>
std::vector<Point> pointsIn(const json& list, const std::string& key) {
  const std::vector<double> numbers = numbersIn(list, 0, key);
  if (numbers.size() % 2 != 0) throw ToolError(inQuotes(key) + " has an odd number of numbers");
  std::vector<Point> points;
  for (std::size_t i = 0; i < numbers.size(); i += 2) {
    if (std::abs(numbers[i]) > kMaxImageSide || std::abs(numbers[i + 1]) > kMaxImageSide)
      throw ToolError(inQuotes(key) + " is out of range");
    points.emplace_back(static_cast<decltype(Point::x)>(numbers[i]),
                        static_cast<decltype(Point::x)>(numbers[i + 1]));
  }
  return points;
}

ShotRecord shotIn(const json& object, const StitchRecord& run) {
  ShotRecord shot;
  shot.image = pathIn(run.folder, object.at("image").get<std::string>());
  shot.outcome = object.at("outcome").get<std::string>();
  shot.detail = object.value("detail", "");
  if (!shot.found()) return shot;
  shot.reprojectionError = finite(object.at("reprojectionError"));
  shot.camFromBoard = poseIn(object.at("camFromBoard"), "camFromBoard");
  shot.corners = pointsIn<cv::Point2d>(object.at("corners"), "corners");
  if (has(object, "grid")) shot.grid = pointsIn<cv::Point>(object.at("grid"), "grid");
  const std::size_t places =
      run.hasDataCodes ? shot.grid.size() : static_cast<std::size_t>(run.board.area());
  if (shot.corners.size() != places)
    throw ToolError("image " + inQuotes(shot.image) + " has " +
                    std::to_string(shot.corners.size()) + " corners for " + std::to_string(places) +
                    " places on the board");
  return shot;
}

CameraRecord cameraIn(const json& object, const StitchRecord& run) {
  CameraRecord camera;
  camera.id = object.at("id").get<std::string>();
  camera.isBase = object.value("isBase", camera.id == run.base);
  if (has(object, "parent")) camera.parent = object.at("parent").get<std::string>();
  camera.depth = static_cast<int>(countIn(object, "depth"));
  if (has(object, "baseFromCam"))
    camera.baseFromCam = poseIn(object.at("baseFromCam"), "baseFromCam");
  if (has(object, "residual")) camera.residual = finite(object.at("residual"));
  camera.imagesFound = countIn(object, "imagesFound");
  camera.imagesTotal = countIn(object, "imagesTotal");
  camera.imagesShared = countIn(object, "imagesShared");
  if (has(object, "intrinsics"))
    camera.intrinsics = intrinsicsIn(object.at("intrinsics"), run.folder);
  camera.imageSize = sizeIn(object, "imageSize");
  if (has(object, "shots"))
    for (const json& shot : object.at("shots")) camera.shots.push_back(shotIn(shot, run));
  return camera;
}

double squareIn(const json& object) {
  const double square = finite(object.at("square"));
  if (square < 0) throw ToolError("\"square\" is below 0");
  return square;
}

int cornersIn(const json& board, const char* key) {
  const std::size_t corners = countIn(board, key);
  if (corners > kMaxBoardCorners) throw ToolError(inQuotes(key) + " is out of range");
  return static_cast<int>(corners);
}

void readBoard(const json& object, StitchRecord& run) {
  const json& board = object.at("board");
  run.hasDataCodes = board.is_string();
  if (run.hasDataCodes) {
    if (has(object, "square")) run.square = squareIn(object);
    return;
  }
  run.board = {cornersIn(board, "columns"), cornersIn(board, "rows")};
  run.square = squareIn(board);
  run.minImages = static_cast<int>(std::max<std::size_t>(1, countIn(object, "minImages")));
}

// Every parent is a camera, and no camera is its own ancestor.
void requireTree(const StitchRecord& run) {
  const auto find = [&](const std::string& id) {
    return std::find_if(run.cameras.begin(), run.cameras.end(),
                        [&](const CameraRecord& camera) { return camera.id == id; });
  };
  for (const CameraRecord& camera : run.cameras) {
    auto at = find(camera.id);
    for (std::size_t steps = 0; !at->parent.empty(); ++steps) {
      at = find(at->parent);
      if (at == run.cameras.end() || steps == run.cameras.size())
        throw ToolError("camera " + inQuotes(camera.id) +
                        " does not lead to the base by its parents");
    }
  }
}

StitchRecord recordIn(const json& object, const std::string& folder) {
  StitchRecord run;
  run.folder = folder;
  if (has(object, "base")) run.base = object.at("base").get<std::string>();
  if (has(object, "error")) run.error = object.at("error").get<std::string>();
  readBoard(object, run);
  const json& cameras = object.at("cameras");
  if (!cameras.is_array() || cameras.empty() || cameras.size() > kMaxCameras)
    throw ToolError("\"cameras\" has to be a list of 1 to " + std::to_string(kMaxCameras));
  for (const json& camera : cameras) {
    try {
      run.cameras.push_back(cameraIn(camera, run));
    } catch (const ToolError& error) {
      throw ToolError("camera " + inQuotes(camera.value("id", "")) + ": " + error.what());
    }
  }
  requireTree(run);
  return run;
}

} // namespace

StitchRecord readStitchRecord(const std::string& path) {
  const std::string text = readWholeFile(path);
  try {
    return recordIn(parseJson(text), std::filesystem::path(path).parent_path().string());
  } catch (const nlohmann::json::exception& error) {
    throw ToolError(path + ": " + error.what());
  } catch (const ToolError& error) {
    throw ToolError(path + ": " + error.what());
  }
}

} // namespace velmorn::tool
