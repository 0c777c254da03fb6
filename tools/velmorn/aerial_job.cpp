// Job files: the input of an aerial view.
#include "velmorn/aerial_job.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <utility>

#include "velmorn/atomic_file.h"
#include "velmorn/extrinsic_file.h"
#include "velmorn/image_list.h"
#include "velmorn/json_object.h"
#include "velmorn/pose.h"
#include "velmorn/result_file.h"
#include "velmorn/tool_error.h"

namespace velmorn::tool {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;

cv::Vec4d regionFrom(const JsonObject& job) {
  const std::vector<double> edges = job.numbers("region", 4);
  if (edges[0] >= edges[2] || edges[1] >= edges[3]) {
    job.fail("\"region\" is x1, y1, x2, y2, with x1 below x2 and y1 below y2");
  }
  return cv::Vec4d(edges.data());
}

std::vector<AerialJobCamera> camerasFrom(const JsonObject& job, const fs::path& folder) {
  std::vector<AerialJobCamera> cameras;
  for (DepthJobCamera& camera : depthCamerasFrom(job, "an aerial view", folder)) {
    cameras.push_back({std::move(camera)});
  }
  return cameras;
}

void requireColourOfAllOrNone(const AerialJob& job) {
  const AerialJobCamera& first = job.cameras.front();
  for (const AerialJobCamera& camera : job.cameras) {
    if (camera.colorPath.empty() == first.colorPath.empty()) continue;
    throw ToolError("camera " + inQuotes(camera.id) + " has " +
                    (job.hasColour() ? "no \"color\"" : "a \"color\"") + ", camera " +
                    inQuotes(first.id) + " has " + (job.hasColour() ? "one" : "none") +
                    "; give colour images of all cameras or of none");
  }
}

cv::Matx44d poseOf(const std::map<std::string, cv::Matx44d>& poses, const std::string& id,
                   const std::string& resultPath) {
  const auto found = poses.find(id);
  if (found == poses.end()) throw ToolError("camera " + inQuotes(id) + " is not in " + resultPath);
  tagOzKCamExtrinsic record{};
  std::copy_n(found->second.val, 16, record.data);
  if (!isFinitePose(found->second) || !isRigid(record)) {
    throw ToolError(resultPath + ": \"baseFromCam\" of camera " + inQuotes(id) +
                    " is no rigid transform");
  }
  return found->second;
}

void placeCameras(std::vector<AerialJobCamera>& cameras, const std::string& resultPath) {
  const std::map<std::string, cv::Matx44d> poses = readBaseFromCam(resultPath);
  const cv::Matx44d firstFromBase = inversePose(poseOf(poses, cameras.front().id, resultPath));
  for (AerialJobCamera& camera : cameras) {
    camera.firstFromCam = firstFromBase * poseOf(poses, camera.id, resultPath);
  }
}

AerialJob jobFrom(const json& value, const fs::path& folder) {
  const JsonObject object(value, "", {"region", "resolution", "result", "depth_unit", "cameras"});
  AerialJob job;
  job.region = regionFrom(object);
  job.resolution = lengthFrom(object, "resolution");
  if (object.has("depth_unit")) job.depthUnit = lengthFrom(object, "depth_unit");
  job.cameras = camerasFrom(object, folder);
  requireColourOfAllOrNone(job);
  // The first camera's frame is the picture's; only further ones have to be placed.
  if (job.cameras.size() > 1 || object.has("result")) {
    placeCameras(job.cameras, pathIn(folder, object.text("result")));
  }
  return job;
}

} // namespace

AerialJob readAerialJob(const std::string& path) {
  const std::string text = readWholeFile(path);
  try {
    return jobFrom(parseJson(text), fs::path(path).parent_path());
  } catch (const ToolError& error) {
    throw ToolError(path + ": " + error.what());
  }
}

} // namespace velmorn::tool
