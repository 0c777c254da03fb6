// Rig files: the input of a stitching run.
#include "velmorn/rig_file.h"

#include <algorithm>
#include <filesystem>
#include <optional>

#include "velmorn/atomic_file.h"
#include "velmorn/board.h"
#include "velmorn/image_list.h"
#include "velmorn/json_object.h"
#include "velmorn/tool_error.h"

namespace velmorn::tool {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;

constexpr int kDefaultMinImages = 3;
constexpr std::size_t kMinCameras = 2;
constexpr std::size_t kMaxIdBytes = sizeof(OzKStitchCstring::str) - 1;
constexpr const char* kAutoBaseText = "auto";
constexpr int kDataCodeMinImages = 1;
constexpr int kDefaultMinCorners = 12;
constexpr int kFewestMinCorners = 4; // a pose needs so many
constexpr int kMostMinCorners = 512; // the library returns no more for an image

tagOzKSize boardFrom(const JsonObject& rig) {
  const std::optional<tagOzKSize> board = parseBoard(rig.text("board"));
  if (!board) {
    rig.fail("\"board\" has to be " + inQuotes(kDataCodeBoard) + " or " + boardRule());
  }
  return *board;
}

float squareFrom(const JsonObject& rig) {
  const std::optional<float> square = usableSquare(rig.number("square"));
  if (!square) rig.fail("\"square\" has to be a length above 0");
  return *square;
}

int minImagesFrom(const JsonObject& rig) {
  const int minImages = rig.wholeNumber("min_images", kDefaultMinImages);
  if (minImages < 1) rig.fail("\"min_images\" has to be at least 1");
  return minImages;
}

int minCornersFrom(const JsonObject& rig) {
  const int minCorners = rig.wholeNumber("min_corners", kDefaultMinCorners);
  if (minCorners < kFewestMinCorners || minCorners > kMostMinCorners) {
    rig.fail("\"min_corners\" has to be " + std::to_string(kFewestMinCorners) + " to " +
             std::to_string(kMostMinCorners));
  }
  return minCorners;
}

// A key that the other kind of board has.
void refuseKey(const JsonObject& rig, const std::string& key, const std::string& reason) {
  if (rig.has(key)) rig.fail(inQuotes(key) + " " + reason);
}

void takeDataCodeBoard(const JsonObject& object, Rig& rig) {
  refuseKey(object, "square", "does not go with a data-code board, whose codes say it");
  refuseKey(object, "min_images",
            "is for a plain board; one position links two cameras here, see \"min_corners\"");
  rig.hasDataCodes = true;
  rig.minImages = kDataCodeMinImages;
  rig.minCorners = minCornersFrom(object);
}

void takePlainBoard(const JsonObject& object, Rig& rig) {
  rig.board = boardFrom(object);
  refuseKey(object, "min_corners", "is for a data-code board");
  rig.square = squareFrom(object);
  rig.minImages = minImagesFrom(object);
}

std::string idFrom(const json& entry, std::size_t index) {
  const JsonObject camera(entry, "camera " + std::to_string(index + 1),
                          {"id", "intrinsics", "images"});
  std::string id = camera.text("id");
  if (id.size() > kMaxIdBytes) {
    camera.fail("\"id\" is longer than " + std::to_string(kMaxIdBytes) + " bytes");
  }
  if (id == kAutoBaseText) camera.fail("\"auto\" is no id, \"base\" uses it");
  return id;
}

RigCamera cameraFrom(const json& entry, std::size_t index, const fs::path& folder) {
  RigCamera camera;
  camera.id = idFrom(entry, index);
  const std::string place = "camera " + inQuotes(camera.id);
  const JsonObject object(entry, place, {"id", "intrinsics", "images"});
  camera.intrinsicsPath = pathIn(folder, object.text("intrinsics"));
  try {
    camera.model = readCameraFile(camera.intrinsicsPath);
    camera.images = expandImages(object.texts("images"), folder);
  } catch (const ToolError& error) {
    // A problem with the object itself already says where it is.
    const std::string reason = error.what();
    throw ToolError(reason.rfind(place, 0) == 0 ? reason : place + ": " + reason);
  }
  return camera;
}

void requireNewId(const std::vector<RigCamera>& cameras, const std::string& id) {
  const bool known = std::any_of(cameras.begin(), cameras.end(),
                                 [&](const RigCamera& camera) { return camera.id == id; });
  if (known) throw ToolError("two cameras have the id " + inQuotes(id));
}

std::vector<RigCamera> camerasFrom(const JsonObject& rig, const fs::path& folder) {
  const json& entries = rig.at("cameras");
  if (!entries.is_array()) rig.fail("\"cameras\" has to be a list");
  if (entries.size() < kMinCameras || entries.size() > kMaxStitchCameras) {
    rig.fail("a rig has 2 to " + std::to_string(kMaxStitchCameras) + " cameras, not " +
             std::to_string(entries.size()));
  }
  std::vector<RigCamera> cameras;
  for (std::size_t i = 0; i < entries.size(); ++i) {
    requireNewId(cameras, idFrom(entries[i], i));
    cameras.push_back(cameraFrom(entries[i], i, folder));
  }
  return cameras;
}

int baseFrom(const JsonObject& rig, const std::vector<RigCamera>& cameras) {
  const std::string base = rig.has("base") ? rig.text("base") : kAutoBaseText;
  for (std::size_t i = 0; i < cameras.size(); ++i) {
    if (cameras[i].id == base) return static_cast<int>(i);
  }
  if (base != kAutoBaseText) {
    rig.fail("\"base\" is " + inQuotes(base) + ", which is no camera's id and not \"auto\"");
  }
  return kAutoBase;
}

void requireEqualImageCounts(const std::vector<RigCamera>& cameras) {
  const RigCamera& first = cameras.front();
  for (const RigCamera& camera : cameras) {
    if (camera.images.size() == first.images.size()) continue;
    throw ToolError("camera " + inQuotes(camera.id) + " has " +
                    counted(camera.images.size(), "image") + ", camera " + inQuotes(first.id) +
                    " has " + std::to_string(first.images.size()) +
                    "; image j of every camera has to show the same board position");
  }
}

void requireEnoughImages(const Rig& rig) {
  const std::size_t images = rig.cameras.front().images.size();
  if (images >= static_cast<std::size_t>(rig.minImages)) return;
  throw ToolError("\"min_images\" is " + std::to_string(rig.minImages) + ", but each camera has " +
                  counted(images, "image"));
}

} // namespace

Rig parseRig(const json& value, const std::string& folder) {
  const JsonObject object(
      value, "",
      {"board", "square", "min_images", "min_corners", "base", "save_corner_images", "cameras"});
  Rig rig;
  if (object.text("board") == kDataCodeBoard) {
    takeDataCodeBoard(object, rig);
  } else {
    takePlainBoard(object, rig);
  }
  rig.saveCornerImages = object.flag("save_corner_images", false);
  rig.cameras = camerasFrom(object, folder);
  rig.base = baseFrom(object, rig.cameras);
  return rig;
}

void requireUsableImages(const Rig& rig) {
  requireEqualImageCounts(rig.cameras);
  requireEnoughImages(rig);
}

Rig readRig(const std::string& path) {
  const std::string text = readWholeFile(path);
  try {
    Rig rig = parseRig(parseJson(text), fs::path(path).parent_path().string());
    requireUsableImages(rig);
    return rig;
  } catch (const ToolError& error) {
    throw ToolError(path + ": " + error.what());
  }
}

} // namespace velmorn::tool
