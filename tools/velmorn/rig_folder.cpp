// Rigs without a rig file: a folder with a folder of images per camera.
#include "velmorn/rig_folder.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <filesystem>
#include <set>
#include <system_error>

#include <nlohmann/json.hpp>

#include "velmorn/tool_error.h"

namespace velmorn::tool {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;

constexpr std::array<const char*, 6> kImageFormats = {".png", ".jpg", ".jpeg",
                                                      ".bmp", ".tif", ".tiff"};
constexpr std::array<const char*, 4> kCameraFiles = {"intrinsics.yml", "intrinsics.yaml",
                                                     "intrinsics.xml", "intrinsics.json"};
constexpr const char* kNewCameraFile = "intrinsics.yml";

bool isImage(const fs::path& name) {
  std::string extension = name.extension().string();
  std::transform(extension.begin(), extension.end(), extension.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return std::find(kImageFormats.begin(), kImageFormats.end(), extension) != kImageFormats.end();
}

bool beginsWith(const std::string& name, const std::string& head) {
  return name.rfind(head, 0) == 0;
}

// Names of the entries, sorted.
std::vector<std::string> namesIn(const fs::path& folder, bool folders) {
  std::vector<std::string> names;
  std::error_code error;
  fs::directory_iterator entry(folder, error);
  if (error) throw ToolError(folder.string() + ": " + error.message());
  for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
    std::error_code ignored;
    const bool isWanted = folders ? entry->is_directory(ignored) : entry->is_regular_file(ignored);
    if (isWanted) names.push_back(entry->path().filename().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

template <typename Test>
std::vector<CameraFolder> foldersWith(const fs::path& folder, const Test& isBoardImage) {
  std::vector<CameraFolder> cameras;
  for (const std::string& id : namesIn(folder, true)) {
    CameraFolder camera;
    camera.id = id;
    const std::vector<std::string> names = namesIn(folder / id, false);
    for (const std::string& name : names)
      if (isImage(name) && isBoardImage(name)) camera.images.push_back(name);
    for (const char* file : kCameraFiles)
      if (camera.intrinsics.empty() && std::count(names.begin(), names.end(), file) != 0)
        camera.intrinsics = file;
    if (!camera.images.empty()) cameras.push_back(camera);
  }
  return cameras;
}

std::vector<std::string> pathsOf(const fs::path& folder, const CameraFolder& camera) {
  std::vector<std::string> paths;
  for (const std::string& name : camera.images)
    paths.push_back((folder / camera.id / name).string());
  return paths;
}

json rigJson(const std::vector<CameraFolder>& cameras, const std::string& board, double square) {
  json rig = {{"board", board}, {"cameras", json::array()}};
  if (board != kDataCodeBoard) rig["square"] = square;
  for (const CameraFolder& camera : cameras) {
    json images = json::array();
    for (const std::string& name : camera.images) images.push_back(camera.id + "/" + name);
    rig["cameras"].push_back({{"id", camera.id},
                              {"intrinsics", camera.id + "/" + camera.intrinsics},
                              {"images", images}});
  }
  return rig;
}

// Entry j of every camera's list becomes the j-th of all names.
void alignImages(const fs::path& folder, const std::vector<CameraFolder>& cameras, Rig& rig) {
  std::set<std::string> names;
  for (const CameraFolder& camera : cameras)
    names.insert(camera.images.begin(), camera.images.end());
  for (RigCamera& camera : rig.cameras) {
    camera.images.clear();
    for (const std::string& name : names)
      camera.images.push_back((folder / camera.id / name).string());
  }
}

} // namespace

std::vector<CameraFolder> cameraFolders(const std::string& folder, bool hasDataCodes) {
  const std::string head = hasDataCodes ? "code" : "board";
  const auto named =
      foldersWith(folder, [&](const std::string& name) { return beginsWith(name, head); });
  if (!named.empty()) return named;
  return foldersWith(folder, [](const std::string& name) {
    return !beginsWith(name, "depth.") && !beginsWith(name, "color.");
  });
}

Rig readRigFolder(
    const std::string& folder, const std::string& board, double square,
    const std::function<void(const std::vector<std::string>&, const std::string&)>& calibrate) {
  const bool hasDataCodes = board == kDataCodeBoard;
  std::vector<CameraFolder> cameras = cameraFolders(folder, hasDataCodes);
  try {
    if (cameras.size() < 2) throw ToolError("no folders with board images of two cameras in it");
    for (CameraFolder& camera : cameras) {
      if (!camera.intrinsics.empty()) continue;
      if (hasDataCodes)
        throw ToolError("camera " + inQuotes(camera.id) + " has no " + kNewCameraFile +
                        "; velmorn intrinsics makes one from images of a plain board");
      camera.intrinsics = kNewCameraFile;
      calibrate(pathsOf(folder, camera), (fs::path(folder) / camera.id / kNewCameraFile).string());
    }
    Rig rig = parseRig(rigJson(cameras, board, square), folder);
    alignImages(folder, cameras, rig);
    requireUsableImages(rig);
    return rig;
  } catch (const ToolError& error) {
    throw ToolError(folder + ": " + error.what());
  }
}

} // namespace velmorn::tool
