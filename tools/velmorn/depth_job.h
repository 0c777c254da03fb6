// What the job files of the commands on several depth cameras have in common.
#ifndef VELMORN64_TOOLS_DEPTH_JOB_H
#define VELMORN64_TOOLS_DEPTH_JOB_H

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "velmorn/camera_file.h"
#include "velmorn/json_object.h"

namespace velmorn::tool {

struct DepthJobCamera {
  std::string id;
  std::string depthPath;
  std::string colorPath;      // empty without a colour image
  std::string intrinsicsPath; // where `model` comes from
  CameraModel model;
};

// Where a camera without "intrinsics" in the job has them from.
struct KnownIntrinsics {
  std::string path;
  CameraModel model;
};
using IntrinsicsById = std::map<std::string, KnownIntrinsics>;

// The key's value, a length above 0.
double lengthFrom(const JsonObject& job, const std::string& key);

// The cameras under "cameras", 1 to 10 with different ids, in the file's order. Throws ToolError
// that names the camera and the key.
//
// subject  of messages, such as "an aerial view"
// folder   what relative paths start from
std::vector<DepthJobCamera> depthCamerasFrom(const JsonObject& job, const std::string& subject,
                                             const std::filesystem::path& folder,
                                             const IntrinsicsById& known = {});

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_DEPTH_JOB_H
