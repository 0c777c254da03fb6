// The files of a simulated rig's folder, and what those for other commands say.
#include "velmorn/simulate_files.h"

#include <algorithm>
#include <cmath>

#include <nlohmann/json.hpp>

#include "velmorn/camera_file.h"
#include "velmorn/grey_image.h"
#include "velmorn/json_text.h"
#include "velmorn/pose.h"
#include "velmorn/round_numbers.h"

namespace velmorn::tool {
namespace {

using Json = nlohmann::ordered_json;

constexpr const char* kResultName = "result.json";
constexpr int kUsualMinImages = 3;
constexpr double kPixelsPerCell = 1.2; // at the ground, so that no cell of it stays empty
constexpr int kNumberWidth = 2;

// "cam1/board-07.png": the number from 1, with zeros in front so that the names are in order.
std::string numberedName(std::size_t camera, const std::string& stem, std::size_t shot,
                         std::size_t count) {
  const std::string number = std::to_string(shot + 1);
  const std::size_t width = std::max<std::size_t>(kNumberWidth, std::to_string(count).size());
  return simulatedId(camera) + "/" + stem + std::string(width - number.size(), '0') + number +
         ".png";
}

std::string cameraFileTextOf(const CameraModel& model) {
  Calibration calibration;
  calibration.imageSize = model.imageSize;
  calibration.cameraMatrix = cv::Mat(cv::Matx33d(model.intrinsic.matrix));
  calibration.distortion = cv::Mat(cv::Matx<double, 1, 12>(model.distortion.coeffs));
  return cameraFileText(calibration);
}

// The cameras of a rig file; `nameOf` gives the image of a camera and shot.
template <typename NameOf>
Json rigCameras(std::size_t cameras, std::size_t shots, NameOf&& nameOf) {
  Json list = Json::array();
  for (std::size_t i = 0; i < cameras; ++i) {
    Json images = Json::array();
    for (std::size_t shot = 0; shot < shots; ++shot) images.push_back(nameOf(i, shot));
    list.push_back({{"id", simulatedId(i)}, {"intrinsics", intrinsicsName(i)}, {"images", images}});
  }
  return list;
}

Json plainRig(const SimulateJob& job, const SimulatedRig& rig, const SimulatedBoards& boards) {
  Json json;
  json["board"] = sizeText(boards.plain.corners);
  json["square"] = boards.plain.square;
  json["min_images"] = std::min(job.plain.shots.shots, kUsualMinImages);
  json["base"] = simulatedId(rig.base);
  json["cameras"] =
      rigCameras(rig.cameras.size(), boards.plainShots.size(),
                 [&](std::size_t i, std::size_t shot) { return plainImageName(boards, i, shot); });
  return json;
}

Json codeRig(const SimulatedRig& rig, const SimulatedBoards& boards) {
  Json json;
  json["board"] = "data-code";
  json["base"] = simulatedId(rig.base);
  json["cameras"] =
      rigCameras(rig.cameras.size(), boards.codeShots.size(),
                 [&](std::size_t i, std::size_t shot) { return codeImageName(boards, i, shot); });
  return json;
}

// The cameras of a merge or aerial job.
Json depthCameras(const SimulatedRig& rig) {
  Json list = Json::array();
  for (std::size_t i = 0; i < rig.cameras.size(); ++i) {
    list.push_back({{"id", simulatedId(i)},
                    {"depth", depthImageName(i)},
                    {"color", colorImageName(i)},
                    {"intrinsics", intrinsicsName(i)}});
  }
  return list;
}

Json mergeJob(const SimulateJob& job, const SimulatedRig& rig) {
  Json json;
  json["result"] = kResultName;
  json["depth_unit"] = job.depth.step;
  json["cameras"] = depthCameras(rig);
  return json;
}

// The part of the belt or table that the cameras see.
cv::Rect2d shownGround(const SimulatedRig& rig) {
  const cv::Size2d size(rig.ground.belt.length, rig.ground.belt.width);
  return rig.seen & cv::Rect2d({-size.width / 2, -size.height / 2}, size);
}

// In the first camera's x/y plane, in whole cells.
Json regionOf(const SimulatedRig& rig, double cell) {
  const cv::Rect2d ground = shownGround(rig);
  const cv::Matx44d firstFromWorld = inversePose(rig.cameras.front().worldFromCam);
  cv::Vec2d low(INFINITY, INFINITY), high = -low;
  for (const double x : {ground.x, ground.x + ground.width}) {
    for (const double y : {ground.y, ground.y + ground.height}) {
      const cv::Vec4d corner = firstFromWorld * cv::Vec4d(x, y, 0, 1);
      for (int axis = 0; axis < 2; ++axis) {
        low[axis] = std::min(low[axis], std::floor(corner[axis] / cell) * cell);
        high[axis] = std::max(high[axis], std::ceil(corner[axis] / cell) * cell);
      }
    }
  }
  return {low[0], low[1], high[0], high[1]};
}

Json aerialJob(const SimulateJob& job, const SimulatedRig& rig) {
  const double cell = roundNumberAtLeast(kPixelsPerCell * unitsPerPixel(job, rig));
  Json json;
  json["region"] = regionOf(rig, cell);
  json["resolution"] = cell;
  json["result"] = kResultName;
  json["depth_unit"] = job.depth.step;
  json["cameras"] = depthCameras(rig);
  return json;
}

Json posesOf(const std::vector<BoardPosition>& positions) {
  Json poses = Json::array();
  for (const BoardPosition& position : positions) poses.push_back(rowsOf(position.worldFromBoard));
  return poses;
}

Json truth(const SimulateJob& job, const SimulatedRig& rig, const SimulatedBoards& boards) {
  Json json;
  json["unit"] = job.unit;
  json["base"] = simulatedId(rig.base);
  for (std::size_t i = 0; i < rig.cameras.size(); ++i) {
    json["cameras"].push_back({{"id", simulatedId(i)},
                               {"baseFromCam", rowsOf(rig.baseFromCam(i))},
                               {"camFromBase", rowsOf(inversePose(rig.baseFromCam(i)))},
                               {"worldFromCam", rowsOf(rig.cameras[i].worldFromCam)}});
  }
  json["board"]["plain"] = {{"columns", boards.plain.corners.width},
                            {"rows", boards.plain.corners.height},
                            {"square", boards.plain.square}};
  json["board"]["dataCode"] = {
      {"columns", boards.code.columns}, {"rows", boards.code.rows}, {"square", boards.code.square}};
  json["shots"]["plain"] = posesOf(boards.plainShots);
  json["shots"]["dataCode"] = posesOf(boards.codeShots);
  return json;
}

} // namespace

std::string plainImageName(const SimulatedBoards& boards, std::size_t camera, std::size_t shot) {
  return numberedName(camera, "board-", shot, boards.plainShots.size());
}

std::string codeImageName(const SimulatedBoards& boards, std::size_t camera, std::size_t shot) {
  return numberedName(camera, "code-", shot, boards.codeShots.size());
}

std::string depthImageName(std::size_t camera) { return simulatedId(camera) + "/depth.png"; }

std::string colorImageName(std::size_t camera) { return simulatedId(camera) + "/color.png"; }

std::string intrinsicsName(std::size_t camera) { return simulatedId(camera) + "/intrinsics.yml"; }

std::vector<SimulatedFile> textFilesOf(const SimulateJob& job, const SimulatedRig& rig,
                                       const SimulatedBoards& boards) {
  std::vector<SimulatedFile> files;
  for (std::size_t i = 0; i < rig.cameras.size(); ++i) {
    files.push_back({intrinsicsName(i), cameraFileTextOf(rig.cameras[i].model)});
  }
  files.push_back({"rig.json", fileText(plainRig(job, rig, boards))});
  files.push_back({"rig-data-code.json", fileText(codeRig(rig, boards))});
  files.push_back({"merge.json", fileText(mergeJob(job, rig))});
  files.push_back({"aerial.json", fileText(aerialJob(job, rig))});
  files.push_back({"truth.json", fileText(truth(job, rig, boards))});
  return files;
}

std::vector<std::string> imageNamesOf(const SimulatedRig& rig, const SimulatedBoards& boards) {
  std::vector<std::string> names;
  for (std::size_t i = 0; i < rig.cameras.size(); ++i) {
    for (std::size_t shot = 0; shot < boards.plainShots.size(); ++shot) {
      names.push_back(plainImageName(boards, i, shot));
    }
    for (std::size_t shot = 0; shot < boards.codeShots.size(); ++shot) {
      names.push_back(codeImageName(boards, i, shot));
    }
    names.push_back(depthImageName(i));
    names.push_back(colorImageName(i));
  }
  return names;
}

} // namespace velmorn::tool
