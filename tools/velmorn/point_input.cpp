// The points of one camera from a file: a point cloud or a depth image.
#include "velmorn/point_input.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <map>

#include "velmorn/atomic_file.h"
#include "velmorn/pcl_cloud.h"
#include "velmorn/tool_error.h"
#include "velmorn/xyz_file.h"

namespace velmorn::tool {
namespace {

namespace fs = std::filesystem;

PointCloud readAs(PointFormat format, const std::string& path) {
  if (format == PointFormat::kXyz) return parseXyz(readWholeFile(path));
  std::error_code error;
  if (!fs::is_regular_file(path, error)) throw ToolError("not a regular file");
  return format == PointFormat::kPly ? readPly(path) : readPcd(path);
}

} // namespace

std::optional<PointFormat> pointFormatOf(const std::string& path) {
  static const std::map<std::string, PointFormat> kFormats = {
      {".ply", PointFormat::kPly},        {".pcd", PointFormat::kPcd},
      {".xyz", PointFormat::kXyz},        {".png", PointFormat::kDepthImage},
      {".tif", PointFormat::kDepthImage}, {".tiff", PointFormat::kDepthImage}};
  std::string extension = fs::path(path).extension().string();
  std::transform(extension.begin(), extension.end(), extension.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  const auto found = kFormats.find(extension);
  return found == kFormats.end() ? std::nullopt : std::optional(found->second);
}

PointCloud readPointCloud(const std::string& path) {
  const std::optional<PointFormat> format = pointFormatOf(path);
  if (!format || *format == PointFormat::kDepthImage) {
    throw ToolError(path + ": not a .ply, .pcd or .xyz file");
  }
  try {
    return readAs(*format, path);
  } catch (const ToolError& error) {
    throw ToolError(path + ": " + error.what());
  }
}

} // namespace velmorn::tool
