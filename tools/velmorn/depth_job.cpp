// What the job files of the commands on several depth cameras have in common.
#include "velmorn/depth_job.h"

#include "velmorn/board.h"
#include "velmorn/image_list.h"
#include "velmorn/rig_file.h"
#include "velmorn/tool_error.h"

namespace velmorn::tool {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;

void readIntrinsics(DepthJobCamera& camera, const JsonObject& object, const fs::path& folder,
                    const IntrinsicsById& known) {
  const auto found = known.find(camera.id);
  if (!object.has("intrinsics") && found != known.end()) {
    camera.intrinsicsPath = found->second.path;
    camera.model = found->second.model;
    return;
  }
  camera.intrinsicsPath = pathIn(folder, object.text("intrinsics"));
  try {
    camera.model = readCameraFile(camera.intrinsicsPath);
  } catch (const ToolError& error) {
    object.fail(error.what());
  }
}

DepthJobCamera cameraFrom(const json& entry, std::size_t index, const fs::path& folder,
                          const IntrinsicsById& known) {
  const std::vector<std::string> keys = {"id", "depth", "color", "intrinsics"};
  DepthJobCamera camera;
  camera.id = JsonObject(entry, "camera " + std::to_string(index + 1), keys).text("id");
  const JsonObject object(entry, "camera " + inQuotes(camera.id), keys);
  camera.depthPath = pathIn(folder, object.text("depth"));
  if (object.has("color")) camera.colorPath = pathIn(folder, object.text("color"));
  readIntrinsics(camera, object, folder, known);
  return camera;
}

void requireDifferentIds(const std::vector<DepthJobCamera>& cameras) {
  for (std::size_t i = 0; i < cameras.size(); ++i) {
    for (std::size_t j = 0; j < i; ++j) {
      if (cameras[i].id != cameras[j].id) continue;
      throw ToolError("two cameras have the id " + inQuotes(cameras[i].id));
    }
  }
}

} // namespace

double lengthFrom(const JsonObject& job, const std::string& key) {
  const double length = job.number(key);
  if (!usableSquare(length)) job.fail(inQuotes(key) + " has to be a length above 0");
  return length;
}

std::vector<DepthJobCamera> depthCamerasFrom(const JsonObject& job, const std::string& subject,
                                             const fs::path& folder, const IntrinsicsById& known) {
  const json& entries = job.at("cameras");
  if (!entries.is_array()) job.fail("\"cameras\" has to be a list");
  if (entries.empty() || entries.size() > kMaxStitchCameras) {
    job.fail(subject + " has 1 to " + std::to_string(kMaxStitchCameras) + " cameras, not " +
             std::to_string(entries.size()));
  }
  std::vector<DepthJobCamera> cameras;
  for (std::size_t i = 0; i < entries.size(); ++i) {
    cameras.push_back(cameraFrom(entries[i], i, folder, known));
  }
  requireDifferentIds(cameras);
  return cameras;
}

} // namespace velmorn::tool
