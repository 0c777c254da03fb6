// Jobs of merged clouds for tests.
#include "tools/merge_builder.h"

#include <pcl/PCLPointCloud2.h>
#include <pcl/io/ply_io.h>

#include <cstring>
#include <stdexcept>

#include "support/temp_dir.h"
#include "tools/aerial_builder.h"

namespace velmorn::tool {
namespace {

using nlohmann::json;

const pcl::PCLPointField& fieldOf(const pcl::PCLPointCloud2& cloud, const std::string& name) {
  for (const pcl::PCLPointField& field : cloud.fields) {
    if (field.name == name) return field;
  }
  throw std::runtime_error("no field " + name);
}

} // namespace

json twoCameraMergeJob() {
  json job = twoCameraJob();
  job.erase("region");
  job.erase("resolution");
  return job;
}

void writeTwoCameraMergeFiles(const std::filesystem::path& folder) {
  writeTwoCameraJobFiles(folder);
  json result = json::parse(readFile(folder / "result.json"));
  result["board"] = {{"columns", 9}, {"rows", 6}, {"square", 25}};
  result["cameras"][0]["intrinsics"] = {{"file", "row.yml"},
                                        {"imageSize", {5, 1}},
                                        {"matrix", {{100, 0, 2}, {0, 100, 0}, {0, 0, 1}}},
                                        {"distortion", std::vector<double>(12, 0.0)}};
  writeFile(folder / "result.json", result.dump());
}

void setBaseFromCam(const std::filesystem::path& resultFile, std::size_t camera, const json& rows) {
  json result = json::parse(readFile(resultFile));
  result["cameras"][camera]["baseFromCam"] = rows;
  writeFile(resultFile, result.dump());
}

// PCL packs red, green and blue into one field.
std::vector<CloudPoint> readMergedCloud(const std::filesystem::path& path) {
  pcl::PCLPointCloud2 cloud;
  if (pcl::PLYReader().read(path.string(), cloud) < 0) throw std::runtime_error("no PLY file");
  std::vector<CloudPoint> points(cloud.width * cloud.height);
  for (std::size_t i = 0; i < points.size(); ++i) {
    const std::uint8_t* const bytes = &cloud.data[i * cloud.point_step];
    int axis = 0;
    for (const char* name : {"x", "y", "z"}) {
      std::memcpy(&points[i].position[axis++], bytes + fieldOf(cloud, name).offset, sizeof(float));
    }
    std::memcpy(points[i].colour.val, bytes + fieldOf(cloud, "rgb").offset, 3);
    points[i].camera = bytes[fieldOf(cloud, "camera").offset];
  }
  return points;
}

} // namespace velmorn::tool
