// A stitched rig of four cameras for reports.
#include "tools/report_rig.h"

#include <cmath>
#include <cstring>
#include <vector>

#include <opencv2/imgcodecs.hpp>

#include "support/temp_dir.h"
#include "velmorn/json_text.h"
#include "velmorn/pose.h"

namespace velmorn::tool {
namespace {

using nlohmann::json;

constexpr int kCameras = 4;
constexpr int kShots = 6;
constexpr int kParents[kCameras] = {-1, 0, 0, 2};
constexpr double kCornerNoise = 0.15; // pixels
constexpr int kRefusedCamera = 1;
constexpr int kRefusedShot = 2;

constexpr double kTableDepth = 90; // behind the board, world
constexpr double kTableSide = 520; // length units
constexpr double kBlockSide = 140;
constexpr double kBlockHeight = 70;

bool isRefused(int camera, int shot) { return camera == kRefusedCamera && shot == kRefusedShot; }

std::string imageName(const std::string& id, int shot) {
  return id + "-" + std::to_string(shot + 1) + ".png";
}

json rows(const cv::Matx44d& pose) { return json::parse(rowsOf(pose).dump()); }

json shotJson(const SyntheticRig& rig, const CornerMap& found, int camera, int shot) {
  const std::string& id = rig.ids[static_cast<std::size_t>(camera)];
  json entry = {{"image", imageName(id, shot)}, {"outcome", "no-board"}, {"detail", ""}};
  if (isRefused(camera, shot)) return entry;
  const cv::Matx44d camFromBoard = rig.camFromBoard(camera, shot);
  const std::vector<cv::Point2f> truth =
      projectCorners(rig.cameras[static_cast<std::size_t>(camera)], rig.board, camFromBoard);
  const std::vector<cv::Point2f>& corners = found.at(id)[static_cast<std::size_t>(shot)];
  double squares = 0;
  json places = json::array();
  for (std::size_t i = 0; i < corners.size(); ++i) {
    squares += std::pow(cv::norm(corners[i] - truth[i]), 2);
    places.push_back(corners[i].x);
    places.push_back(corners[i].y);
  }
  entry["outcome"] = "found";
  entry["reprojectionError"] = std::sqrt(squares / static_cast<double>(corners.size()));
  entry["camFromBoard"] = rows(camFromBoard);
  entry["corners"] = places;
  return entry;
}

json lensJson(const CameraModel& lens, const std::string& id) {
  const cv::Matx33d& m = lens.matrix;
  return {{"file", id + ".yml"},
          {"imageSize", {lens.imageSize.width, lens.imageSize.height}},
          {"matrix", {{m(0, 0), 0, m(0, 2)}, {0, m(1, 1), m(1, 2)}, {0, 0, 1}}},
          {"distortion", std::vector<double>(lens.distortion.val, lens.distortion.val + 12)}};
}

json cameraJson(const SyntheticRig& rig, const CornerMap& found, int camera) {
  const auto index = static_cast<std::size_t>(camera);
  const int parent = kParents[camera];
  const int used = kShots - (camera == kRefusedCamera ? 1 : 0);
  json entry;
  entry["id"] = rig.ids[index];
  entry["isBase"] = parent < 0;
  entry["parent"] = parent < 0 ? json() : json(rig.ids[static_cast<std::size_t>(parent)]);
  entry["depth"] = parent < 0 ? 0 : parent == 0 ? 1 : 2;
  entry["imagesFound"] = used;
  entry["imagesTotal"] = kShots;
  entry["imagesShared"] = parent < 0 ? 0 : used;
  entry["residual"] = parent < 0 ? 0 : 0.1234 * camera;
  entry["baseFromCam"] = rows(rig.camFromCam(0, camera));
  entry["intrinsics"] = lensJson(rig.cameras[index], rig.ids[index]);
  entry["imageSize"] = {rig.cameras[index].imageSize.width, rig.cameras[index].imageSize.height};
  entry["shots"] = json::array();
  for (int shot = 0; shot < kShots; ++shot)
    entry["shots"].push_back(shotJson(rig, found, camera, shot));
  return entry;
}

void append(std::string& bytes, const cv::Vec3d& point, const cv::Vec3b& colour, int camera) {
  for (int i = 0; i < 3; ++i) {
    const auto value = static_cast<float>(point[i]);
    char raw[sizeof(value)];
    std::memcpy(raw, &value, sizeof(value));
    bytes.append(raw, sizeof(raw));
  }
  for (int i = 0; i < 3; ++i) bytes += static_cast<char>(colour[i]);
  bytes += static_cast<char>(camera);
}

bool isOnBlock(double x, double y) {
  return std::abs(x) < kBlockSide / 2 && std::abs(y) < kBlockSide / 2;
}

cv::Vec3b colourAt(double x, double y) {
  if (isOnBlock(x, y)) return {kBlockRed, kBlockGreen, kBlockBlue};
  const bool isDark = (std::lround(std::floor(x / 65)) + std::lround(std::floor(y / 65))) % 2 != 0;
  return isDark ? cv::Vec3b(120, 130, 140) : cv::Vec3b(165, 170, 175);
}

// The middle of all board positions, in the base's frame, with the table's directions.
cv::Matx44d baseFromTable(const SyntheticRig& rig) {
  cv::Matx44d baseFromTable = rig.camFromWorld[0];
  cv::Vec4d sum;
  for (const Shot& shot : rig.shots)
    sum += rig.camFromWorld[0] * shot.worldFromBoard * cv::Vec4d(100, 62, 0, 1);
  for (int i = 0; i < 3; ++i) baseFromTable(i, 3) = sum[i] / static_cast<double>(rig.shots.size());
  return baseFromTable;
}

} // namespace

SyntheticRig reportRig() {
  RigOptions options;
  options.cameraCount = kCameras;
  options.groups = rowGroups(kCameras);
  options.shotsPerGroup = kShots;
  options.ids = {"cam1", "cam2", "cam3", "cam4"};
  return makeRig(options);
}

json reportResult(const SyntheticRig& rig) {
  const CornerMap found = rig.cornerMap(kCornerNoise);
  json result = {
      {"libraryVersion", VELMORN64_VERSION},
      {"board",
       {{"columns", rig.board.width}, {"rows", rig.board.height}, {"square", rig.board.square}}},
      {"minImages", 3},
      {"base", rig.ids[0]},
      {"cameras", json::array()}};
  for (int camera = 0; camera < kCameras; ++camera)
    result["cameras"].push_back(cameraJson(rig, found, camera));
  return result;
}

void writeReportImages(const SyntheticRig& rig, const std::filesystem::path& folder) {
  for (int camera = 0; camera < kCameras; ++camera) {
    const auto index = static_cast<std::size_t>(camera);
    const BoardRenderer renderer(rig.cameras[index]);
    for (int shot = 0; shot < kShots; ++shot) {
      const cv::Mat image = isRefused(camera, shot)
                                ? renderer.renderEmpty()
                                : renderer.render(rig.board, rig.camFromBoard(camera, shot));
      cv::imwrite((folder / imageName(rig.ids[index], shot)).string(), image);
    }
  }
}

std::string reportCloud(const SyntheticRig& rig, int count) {
  std::string text = "ply\nformat binary_little_endian 1.0\n";
  for (int camera = 0; camera < kCameras; ++camera)
    text += "comment camera " + std::to_string(camera) + " " +
            rig.ids[static_cast<std::size_t>(camera)] + "\n";
  text += "element vertex " + std::to_string(kCameras * count * count) + "\n";
  for (const char* name : {"x", "y", "z"}) text += std::string("property float ") + name + "\n";
  for (const char* name : {"red", "green", "blue", "camera"})
    text += std::string("property uchar ") + name + "\n";
  text += "end_header\n";
  const cv::Matx44d base = baseFromTable(rig);
  for (int camera = 0; camera < kCameras; ++camera) {
    for (int i = 0; i < count * count; ++i) {
      // Each camera's quarter reaches over the middle.
      const double x = ((i % count) / (count - 1.0) - 0.5 + (camera % 2 - 0.5) * 0.4) * kTableSide;
      const double y = ((i / count) / (count - 1.0) - 0.5 + (camera / 2 - 0.5) * 0.4) * kTableSide;
      const double z = kTableDepth - (isOnBlock(x, y) ? kBlockHeight : 0);
      const cv::Vec4d point = base * cv::Vec4d(x, y, z, 1);
      append(text, {point[0], point[1], point[2]}, colourAt(x, y), camera);
    }
  }
  return text;
}

} // namespace velmorn::tool
