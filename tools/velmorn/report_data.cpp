// What the page's three-dimensional view is made from.
#include "velmorn/report_data.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "velmorn/html_text.h"
#include "velmorn/json_text.h"
#include "velmorn/report_style.h"
#include "velmorn/tool_error.h"

namespace velmorn::tool {
namespace {

using Json = nlohmann::ordered_json;

constexpr int kSteps = 65535; // of a coordinate within the cloud's box
constexpr std::uint8_t kNoCamera = 255;

Json listOf(const cv::Vec3d& point) { return {point[0] + 0, point[1] + 0, point[2] + 0}; }

Json rowsOf3(const cv::Matx33d& m) {
  Json rows = Json::array();
  for (int row = 0; row < 3; ++row) rows.push_back(listOf({m(row, 0), m(row, 1), m(row, 2)}));
  return rows;
}

Json cameraJson(const StitchRecord& record, const ModelCamera& camera) {
  Json corners = Json::array();
  for (const cv::Point2d& corner : camera.corners) corners.push_back({corner.x, corner.y});
  const CameraRecord& recorded = record.cameras[camera.camera];
  return {{"index", camera.camera},
          {"id", recorded.id},
          {"isBase", recorded.isBase},
          {"colour", camera.camera % kCameraColours},
          {"parent", camera.parent ? Json(*camera.parent) : Json()},
          {"baseFromCam", rowsOf(camera.baseFromCam)},
          {"corners", corners}};
}

Json boardJson(const ModelBoard& board) {
  Json outline = Json::array();
  for (const cv::Vec3d& corner : board.outline) outline.push_back(listOf(corner));
  return {{"camera", board.camera},
          {"shot", board.shot + 1},
          {"colour", board.camera % kCameraColours},
          {"outline", outline}};
}

struct CloudBox {
  cv::Vec3d least;
  cv::Vec3d step;
};

CloudBox boxOf(const std::vector<cv::Vec3f>& points) {
  cv::Vec3d least = points.front();
  cv::Vec3d most = points.front();
  for (const cv::Vec3d point : points) {
    for (int i = 0; i < 3; ++i) {
      least[i] = std::min(least[i], point[i]);
      most[i] = std::max(most[i], point[i]);
    }
  }
  return {least, (most - least) * (1.0 / kSteps)};
}

std::string positionBytes(const std::vector<cv::Vec3f>& points, const CloudBox& box) {
  std::string bytes;
  bytes.reserve(points.size() * 6);
  for (const cv::Vec3d point : points) {
    for (int i = 0; i < 3; ++i) {
      const double steps = box.step[i] > 0 ? (point[i] - box.least[i]) / box.step[i] : 0;
      const auto number = static_cast<unsigned>(std::clamp(std::lround(steps), 0L, long{kSteps}));
      bytes += static_cast<char>(number & 0xFFU);
      bytes += static_cast<char>(number >> 8U);
    }
  }
  return bytes;
}

std::string colourBytes(const std::vector<cv::Vec3b>& colours) {
  std::string bytes;
  bytes.reserve(colours.size() * 3);
  for (const cv::Vec3b& colour : colours)
    for (int i = 0; i < 3; ++i) bytes += static_cast<char>(colour[i]);
  return bytes;
}

// The record's index of each camera that the file's comments name.
std::vector<std::uint8_t> recordIndices(const StitchRecord& record, const ColouredCloud& cloud) {
  std::vector<std::uint8_t> indices(256, kNoCamera);
  for (std::size_t n = 0; n < std::min(indices.size(), cloud.cameraIds.size()); ++n) {
    for (std::size_t i = 0; i < std::min<std::size_t>(kNoCamera, record.cameras.size()); ++i) {
      if (oneLine(record.cameras[i].id) == cloud.cameraIds[n])
        indices[n] = static_cast<std::uint8_t>(i);
    }
  }
  return indices;
}

std::string cameraBytes(const StitchRecord& record, const ColouredCloud& cloud) {
  const std::vector<std::uint8_t> indices = recordIndices(record, cloud);
  std::string bytes;
  for (const std::uint8_t camera : cloud.cameras) bytes += static_cast<char>(indices[camera]);
  return bytes;
}

Json cloudJson(const StitchRecord& record, const ColouredCloud& cloud) {
  if (cloud.points.empty()) return nullptr;
  const CloudBox box = boxOf(cloud.points);
  const bool hasCameras = !cloud.cameras.empty() && !cloud.cameraIds.empty();
  return {
      {"count", cloud.points.size()},
      {"least", listOf(box.least)},
      {"step", listOf(box.step)},
      {"positions", base64Text(positionBytes(cloud.points, box))},
      {"colours", cloud.colours.empty() ? Json() : Json(base64Text(colourBytes(cloud.colours)))},
      {"cameras", hasCameras ? Json(base64Text(cameraBytes(record, cloud))) : Json()}};
}

} // namespace

Json reportData(const StitchRecord& record, const ReportModel& model, const ReportFrame& frame,
                const ColouredCloud& cloud) {
  Json data;
  data["viewFromBase"] = rowsOf3(frame.viewFromBase);
  data["least"] = listOf(frame.least);
  data["most"] = listOf(frame.most);
  data["cell"] = frame.cell;
  data["frustumDepth"] = frame.frustumDepth;
  data["cameras"] = Json::array();
  for (const ModelCamera& camera : model.cameras)
    data["cameras"].push_back(cameraJson(record, camera));
  data["boards"] = Json::array();
  for (const ModelBoard& board : model.boards) data["boards"].push_back(boardJson(board));
  data["cloud"] = cloudJson(record, cloud);
  return data;
}

} // namespace velmorn::tool
