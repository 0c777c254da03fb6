// The rig as shapes.
#include "velmorn/report_model.h"

#include <algorithm>
#include <cmath>

#include "velmorn/pose.h"
#include "velmorn/tool_error.h"

namespace velmorn::tool {
namespace {

// x/z and y/z of the corner of a usual lens: 60 by 46.8 degrees, an image of 4 to 3.
constexpr double kUsualHalfWidth = 0.577;
constexpr double kUsualHalfHeight = 0.433;
constexpr double kWidestTangent = 4; // wider images are drawn as if cut there
constexpr double kFarthest = 1e9;    // length units from the base; farther is not drawn

std::array<cv::Point2d, 4> usualCorners() {
  const double x = kUsualHalfWidth;
  const double y = kUsualHalfHeight;
  return {{{-x, -y}, {x, -y}, {x, y}, {-x, y}}};
}

cv::Size imageSizeOf(const CameraRecord& camera) {
  return camera.imageSize.area() > 0 ? camera.imageSize : camera.intrinsics->model.imageSize;
}

// Of the lens without its distortion, which is not defined beyond the image.
std::array<cv::Point2d, 4> cornersOf(const CameraRecord& camera) {
  if (!camera.intrinsics) return usualCorners();
  const cv::Size size = imageSizeOf(camera);
  if (size.area() == 0) return usualCorners();
  const auto tangent = [](double pixel, double principal, double focal) {
    return std::clamp((pixel - principal) / focal, -kWidestTangent, kWidestTangent);
  };
  const double* m = camera.intrinsics->model.intrinsic.matrix;
  const double left = tangent(-0.5, m[2], m[0]);
  const double right = tangent(size.width - 0.5, m[2], m[0]);
  const double top = tangent(-0.5, m[5], m[4]);
  const double bottom = tangent(size.height - 0.5, m[5], m[4]);
  return {{{left, top}, {right, top}, {right, bottom}, {left, bottom}}};
}

std::optional<std::size_t> indexOf(const StitchRecord& record, const std::string& id) {
  for (std::size_t i = 0; i < record.cameras.size(); ++i) {
    if (record.cameras[i].id == id) return i;
  }
  return std::nullopt;
}

// In board coordinates. A plain board has one row of squares around its inner corners.
struct BoardSides {
  cv::Point2d from;
  cv::Point2d to;
};

BoardSides plainSides(const StitchRecord& record) {
  return {{-record.square, -record.square},
          {record.board.width * record.square, record.board.height * record.square}};
}

// The part of a data-code board that the shot shows.
BoardSides shownSides(const ShotRecord& shot, double square) {
  BoardSides sides{shot.grid.front(), shot.grid.front()};
  for (const cv::Point& corner : shot.grid) {
    sides.from = {std::min<double>(sides.from.x, corner.x),
                  std::min<double>(sides.from.y, corner.y)};
    sides.to = {std::max<double>(sides.to.x, corner.x), std::max<double>(sides.to.y, corner.y)};
  }
  return {sides.from * square, sides.to * square};
}

std::optional<BoardSides> sidesOf(const StitchRecord& record, const ShotRecord& shot) {
  if (!record.hasDataCodes) return plainSides(record);
  if (record.square == 0 || shot.grid.empty()) return std::nullopt;
  return shownSides(shot, record.square);
}

bool isNear(const cv::Vec3d& point) { return cv::norm(point) < kFarthest; }

std::optional<ModelBoard> boardOf(const StitchRecord& record, const ModelCamera& placed,
                                  std::size_t index) {
  const ShotRecord& shot = record.cameras[placed.camera].shots[index];
  if (!shot.found()) return std::nullopt;
  const std::optional<BoardSides> sides = sidesOf(record, shot);
  if (!sides) return std::nullopt;
  const cv::Matx44d baseFromBoard = placed.baseFromCam * shot.camFromBoard;
  const auto inBase = [&](double x, double y) {
    const cv::Vec4d point = baseFromBoard * cv::Vec4d(x, y, 0, 1);
    return cv::Vec3d(point[0], point[1], point[2]);
  };
  const ModelBoard board{placed.camera,
                         index,
                         {inBase(sides->from.x, sides->from.y), inBase(sides->to.x, sides->from.y),
                          inBase(sides->to.x, sides->to.y), inBase(sides->from.x, sides->to.y)}};
  if (!std::all_of(board.outline.begin(), board.outline.end(), isNear)) return std::nullopt;
  return board;
}

} // namespace

ReportModel reportModel(const StitchRecord& record) {
  ReportModel model;
  for (std::size_t i = 0; i < record.cameras.size(); ++i) {
    const CameraRecord& camera = record.cameras[i];
    if (!camera.baseFromCam) continue;
    if (!isNear(translationOf(*camera.baseFromCam)))
      throw ToolError("camera " + inQuotes(camera.id) + " is too far from the base to be drawn");
    const auto parent = camera.isBase ? std::nullopt : indexOf(record, camera.parent);
    model.cameras.push_back({i, parent, *camera.baseFromCam, cornersOf(camera)});
  }
  for (const ModelCamera& placed : model.cameras) {
    for (std::size_t shot = 0; shot < record.cameras[placed.camera].shots.size(); ++shot) {
      const std::optional<ModelBoard> board = boardOf(record, placed, shot);
      if (board) model.boards.push_back(*board);
    }
  }
  return model;
}

cv::Vec3d imagePlace(const ModelCamera& camera, const cv::Point2d& ray, double depth) {
  const cv::Vec4d place = camera.baseFromCam * cv::Vec4d(ray.x * depth, ray.y * depth, depth, 1);
  return {place[0], place[1], place[2]};
}

std::vector<cv::Vec3d> modelPoints(const ReportModel& model) {
  std::vector<cv::Vec3d> points;
  for (const ModelCamera& camera : model.cameras) {
    points.push_back(translationOf(camera.baseFromCam));
  }
  for (const ModelBoard& board : model.boards) {
    points.insert(points.end(), board.outline.begin(), board.outline.end());
  }
  return points;
}

} // namespace velmorn::tool
