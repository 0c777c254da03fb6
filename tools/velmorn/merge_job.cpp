// Job files: the input of a merged cloud.
#include "velmorn/merge_job.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <system_error>
#include <utility>

#include "velmorn/atomic_file.h"
#include "velmorn/extrinsic_file.h"
#include "velmorn/image_list.h"
#include "velmorn/pose.h"
#include "velmorn/stitch_record.h"
#include "velmorn/tool_error.h"

namespace velmorn::tool {
namespace {

namespace fs = std::filesystem;

constexpr const char* kBaseFrame = "base";
const std::string kFromCam = "FromCam";

// What the result file says about the cameras; empty without one.
struct Places {
  std::string path; // of the result file
  std::map<std::string, cv::Matx44d> baseFromCam;
  IntrinsicsById intrinsics;
};

Places placesIn(const std::string& resultPath) {
  Places places;
  places.path = resultPath;
  for (const CameraRecord& camera : readStitchRecord(resultPath).cameras) {
    if (camera.baseFromCam) places.baseFromCam[camera.id] = *camera.baseFromCam;
    if (camera.intrinsics) {
      places.intrinsics[camera.id] = {camera.intrinsics->file, camera.intrinsics->model};
    }
  }
  return places;
}

// Without a result file there is one camera, and it is the base.
cv::Matx44d baseFromCamOf(const std::string& id, const Places& places) {
  if (places.path.empty()) return cv::Matx44d::eye();
  const auto found = places.baseFromCam.find(id);
  if (found == places.baseFromCam.end()) {
    throw ToolError("camera " + inQuotes(id) + " has no place in " + places.path);
  }
  return found->second;
}

DepthRange rangeFrom(const JsonObject& job) {
  const std::vector<double> ends = job.numbers("range", 2);
  if (ends[0] < 0 || ends[0] >= ends[1]) {
    job.fail(
        "\"range\" is the nearest and the farthest depth, with the nearest not below 0 and "
        "below the farthest");
  }
  return {ends[0], ends[1]};
}

// The frame's name and frameFromCam of the camera that the extrinsic belongs to.
std::pair<std::string, cv::Matx44d> readFrame(const std::string& path) {
  const NamedExtrinsic named = readExtrinsicFile(path);
  if (!isRigid(named.extrinsic)) {
    throw ToolError(path + ": the extrinsic is no rigid transform, the cloud would be distorted");
  }
  const std::size_t nameLength = named.direction.size() - kFromCam.size();
  return {named.direction.substr(0, nameLength), poseFrom(named.extrinsic)};
}

void placeFrame(const JsonObject& object, const fs::path& folder, const Places& places,
                MergeJob& job) {
  const bool isBase = !object.has("frame") || object.text("frame") == kBaseFrame;
  if (isBase && object.has("frame_camera")) {
    object.fail("\"frame_camera\" belongs to a \"frame\" from a file");
  }
  if (isBase) return;
  const auto [name, frameFromCam] = readFrame(pathIn(folder, object.text("frame")));
  job.frameName = name;
  job.frameFromBase = frameFromCam;
  if (!object.has("frame_camera")) return;
  const std::string id = object.text("frame_camera");
  if (places.path.empty() && id != job.cameras.front().id) {
    object.fail("\"frame_camera\" is " + inQuotes(id) + ", which no \"result\" places");
  }
  job.frameFromBase = frameFromCam * inversePose(baseFromCamOf(id, places));
}

MergeJob jobFrom(const nlohmann::json& value, const fs::path& folder) {
  const JsonObject object(
      value, "", {"result", "depth_unit", "range", "voxel", "frame", "frame_camera", "cameras"});
  MergeJob job;
  if (object.has("depth_unit")) job.depthUnit = lengthFrom(object, "depth_unit");
  if (object.has("range")) job.range = rangeFrom(object);
  if (object.has("voxel")) job.voxel = lengthFrom(object, "voxel");
  Places places;
  if (object.has("result")) places = placesIn(pathIn(folder, object.text("result")));
  for (DepthJobCamera& camera :
       depthCamerasFrom(object, "a merged cloud", folder, places.intrinsics)) {
    job.cameras.push_back({std::move(camera)});
  }
  if (job.cameras.size() > 1 && places.path.empty()) object.fail("key \"result\" is missing");
  for (MergeJobCamera& camera : job.cameras) camera.baseFromCam = baseFromCamOf(camera.id, places);
  placeFrame(object, folder, places, job);
  return job;
}

// The first of the names that the folder has, with the folder; empty without one.
std::string fileIn(const fs::path& folder, const std::vector<const char*>& names) {
  std::error_code ignored;
  for (const char* name : names)
    if (fs::is_regular_file(folder / name, ignored)) return (folder / name).string();
  return "";
}

nlohmann::json cameraOfFolder(const std::string& id, const std::string& depth,
                              const std::string& color) {
  nlohmann::json camera = {{"id", id}, {"depth", depth}};
  if (!color.empty()) camera["color"] = color;
  return camera;
}

nlohmann::json camerasOfFolder(const std::string& folder) {
  std::vector<fs::path> folders;
  std::error_code error;
  fs::directory_iterator entry(folder, error);
  if (error) throw ToolError(error.message());
  for (; !error && entry != fs::directory_iterator(); entry.increment(error))
    folders.push_back(entry->path());
  std::sort(folders.begin(), folders.end());
  nlohmann::json cameras = nlohmann::json::array();
  for (const fs::path& camera : folders) {
    const std::string depth = fileIn(camera, {"depth.png", "depth.tif", "depth.tiff"});
    if (depth.empty()) continue;
    const std::string color = fileIn(
        camera, {"color.png", "color.jpg", "color.jpeg", "color.bmp", "color.tif", "color.tiff"});
    cameras.push_back(cameraOfFolder(camera.filename().string(), depth, color));
  }
  if (cameras.empty()) throw ToolError("no folder with a depth.png in it");
  return cameras;
}

} // namespace

MergeJob readMergeFolder(const std::string& folder, const std::string& resultPath) {
  try {
    const nlohmann::json cameras = camerasOfFolder(folder);
    return jobFrom({{"result", resultPath}, {"cameras", cameras}}, "");
  } catch (const ToolError& error) {
    throw ToolError(folder + ": " + error.what());
  }
}

MergeJob readMergeJob(const std::string& path) {
  const std::string text = readWholeFile(path);
  try {
    return jobFrom(parseJson(text), fs::path(path).parent_path());
  } catch (const ToolError& error) {
    throw ToolError(path + ": " + error.what());
  }
}

} // namespace velmorn::tool
