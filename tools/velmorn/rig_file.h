// Rig files: the input of a stitching run.
#ifndef VELMORN64_TOOLS_RIG_FILE_H
#define VELMORN64_TOOLS_RIG_FILE_H

#include <string>
#include <vector>

#include <nlohmann/json_fwd.hpp>

#include "velmorn/camera_file.h"
#include "velmorn64.h"

namespace velmorn::tool {

// What the library takes to choose the base itself.
constexpr int kAutoBase = -1;

// In place of a plain board's inner corners.
constexpr const char* kDataCodeBoard = "data-code";

struct RigCamera {
  std::string id;
  std::string intrinsicsPath;
  CameraModel model;
  std::vector<std::string> images; // paths; entry j shows board position j
};

struct Rig {
  bool hasDataCodes = false; // a data-code board, which says its own square and size
  tagOzKSize board{};        // inner corners per row and column; of a plain board only
  float square = 0;          // side of a square; gives the result its length unit; likewise
  int minImages = 0;         // board positions that link two cameras; 1 with data codes
  int minCorners = 0;        // fewest corners of an image to be used; with data codes only
  int base = kAutoBase;      // index in `cameras`
  bool saveCornerImages = false;
  std::vector<RigCamera> cameras; // in the file's order
};

// Reads a rig file and everything it names but the images. Relative paths in it are relative to its
// folder. Throws ToolError that names the file, and the camera or key, for anything that a run
// could not use.
Rig readRig(const std::string& path);

// The same from the file's content, with paths relative to `folder`; without requireUsableImages.
// Throws ToolError that names the camera or key.
Rig parseRig(const nlohmann::json& content, const std::string& folder);

// Throws ToolError when the cameras' lists of images differ in length or are too short to link two
// cameras.
void requireUsableImages(const Rig& rig);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_RIG_FILE_H
