// The points of a merged cloud, with their colours.
#include "velmorn/coloured_cloud.h"

#include <cmath>
#include <filesystem>
#include <optional>
#include <random>

#include "velmorn/file_header.h"
#include "velmorn/pcl_fields.h"
#include "velmorn/tool_error.h"

namespace velmorn::tool {
namespace {

constexpr std::size_t kMostCameras = 256; // what a number of 8 bits tells apart
constexpr std::size_t kColourBytes = 4;   // PCL's packed colour: blue, green, red and one unused

// From the lines "comment camera N ID".
std::vector<std::string> cameraIdsOf(const std::string& path) {
  std::vector<std::string> ids;
  for (const std::vector<std::string>& words : readFileHeader(path, "end_header").lines) {
    if (words.size() < 4 || words[0] != "comment" || words[1] != "camera") continue;
    if (ids.size() == kMostCameras || words[2] != std::to_string(ids.size())) continue;
    std::string id = words[3];
    for (std::size_t i = 4; i < words.size(); ++i) id += " " + words[i];
    ids.push_back(id);
  }
  return ids;
}

struct Fields {
  Coordinate x, y, z;
  std::optional<std::size_t> colour;
  std::optional<std::size_t> camera;
};

Fields fieldsOf(const pcl::PCLPointCloud2& read) {
  return {coordinateOf(read, "x"), coordinateOf(read, "y"), coordinateOf(read, "z"),
          fieldOffset(read, "rgb", kColourBytes), fieldOffset(read, "camera", 1)};
}

void addColouredPoint(ColouredCloud& cloud, const std::uint8_t* bytes, const Fields& fields) {
  const cv::Vec3f point(static_cast<float>(valueAt(bytes, fields.x)),
                        static_cast<float>(valueAt(bytes, fields.y)),
                        static_cast<float>(valueAt(bytes, fields.z)));
  if (!std::isfinite(point[0]) || !std::isfinite(point[1]) || !std::isfinite(point[2])) return;
  cloud.points.push_back(point);
  if (fields.colour) {
    const std::uint8_t* const colour = bytes + *fields.colour;
    cloud.colours.emplace_back(colour[2], colour[1], colour[0]);
  }
  if (fields.camera) cloud.cameras.push_back(bytes[*fields.camera]);
}

ColouredCloud readFrom(const std::string& path) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(path, error)) throw ToolError("not a regular file");
  const pcl::PCLPointCloud2 read = readPlyFields(path);
  ColouredCloud cloud;
  cloud.cameraIds = cameraIdsOf(path);
  cloud.read = pointsIn(read);
  if (cloud.read == 0) return cloud;
  const Fields fields = fieldsOf(read);
  for (std::size_t i = 0; i < cloud.read; ++i) addColouredPoint(cloud, pointAt(read, i), fields);
  return cloud;
}

} // namespace

ColouredCloud readColouredCloud(const std::string& path) {
  try {
    return readFrom(path);
  } catch (const ToolError& error) {
    throw ToolError(path + ": " + error.what());
  }
}

ColouredCloud thinned(const ColouredCloud& cloud, std::size_t most) {
  const std::size_t number = cloud.points.size();
  if (number <= most) return cloud;
  ColouredCloud part;
  part.cameraIds = cloud.cameraIds;
  part.read = cloud.read;
  std::mt19937 random; // the standard fixes its numbers, not those of its distributions
  for (std::size_t i = 0; i < most; ++i) {
    const std::size_t from = i * number / most;
    const std::size_t to = (i + 1) * number / most;
    const std::size_t taken = from + random() % (to - from);
    part.points.push_back(cloud.points[taken]);
    if (!cloud.colours.empty()) part.colours.push_back(cloud.colours[taken]);
    if (!cloud.cameras.empty()) part.cameras.push_back(cloud.cameras[taken]);
  }
  return part;
}

} // namespace velmorn::tool
