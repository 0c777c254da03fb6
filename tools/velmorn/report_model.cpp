// The rig as shapes.
#include "velmorn/report_model.h"

#include <algorithm>
#include <cmath>

#include "velmorn/extrinsic_file.h"
#include "velmorn/lens.h"
#include "velmorn/pose.h"
#include "velmorn/tool_error.h"

namespace velmorn::tool {
namespace {

// x/z and y/z of the corner of a usual lens: 60 by 46.8 degrees, an image of 4 to 3.
constexpr double kUsualHalfWidth = 0.577;
constexpr double kUsualHalfHeight = 0.433;
constexpr double kWidestTangent = 4; // wider images are drawn as if cut there
constexpr double kFarthest = 1e9;    // length units; what is farther is no place
constexpr double kLeastFacing = 1e-6;

bool isPlace(const cv::Matx44d& pose) {
  tagOzKCamExtrinsic record{};
  std::copy_n(pose.val, 16, record.data);
  return isFinitePose(pose) && isRigid(record) && cv::norm(translationOf(pose)) < kFarthest;
}

CameraModel lensOf(const IntrinsicsRecord& intrinsics) {
  CameraModel lens;
  std::copy_n(intrinsics.matrix.val, 9, lens.intrinsic.matrix);
  const std::size_t number = std::min<std::size_t>(12, intrinsics.distortion.size());
  std::copy_n(intrinsics.distortion.begin(), number, lens.distortion.coeffs);
  return lens;
}

std::array<cv::Point2d, 4> usualCorners() {
  const double x = kUsualHalfWidth;
  const double y = kUsualHalfHeight;
  return {{{-x, -y}, {x, -y}, {x, y}, {-x, y}}};
}

cv::Size imageSizeOf(const CameraRecord& camera) {
  const bool isKnown = camera.imageSize.width > 0 && camera.imageSize.height > 0;
  return isKnown ? camera.imageSize : camera.intrinsics->imageSize;
}

// Of the lens without its distortion, which is not defined beyond the image.
std::array<cv::Point2d, 4> cornersOf(const CameraRecord& camera) {
  if (!camera.intrinsics) return usualCorners();
  const cv::Size size = imageSizeOf(camera);
  const cv::Matx33d& m = camera.intrinsics->matrix;
  if (size.width <= 0 || size.height <= 0 || !(m(0, 0) > 0) || !(m(1, 1) > 0)) return usualCorners();
  const auto tangent = [](double pixel, double principal, double focal) {
    return std::clamp((pixel - principal) / focal, -kWidestTangent, kWidestTangent);
  };
  const double left = tangent(-0.5, m(0, 2), m(0, 0));
  const double right = tangent(size.width - 0.5, m(0, 2), m(0, 0));
  const double top = tangent(-0.5, m(1, 2), m(1, 1));
  const double bottom = tangent(size.height - 0.5, m(1, 2), m(1, 1));
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
    sides.from = {std::min<double>(sides.from.x, corner.x), std::min<double>(sides.from.y, corner.y)};
    sides.to = {std::max<double>(sides.to.x, corner.x), std::max<double>(sides.to.y, corner.y)};
  }
  return {sides.from * square, sides.to * square};
}

std::optional<BoardSides> sidesOf(const StitchRecord& record, const CameraRecord& camera,
                                  const ShotRecord& shot) {
  if (!record.hasDataCodes) return plainSides(record);
  const std::optional<double> square = measuredSquare(camera, shot);
  if (!square) return std::nullopt;
  return shownSides(shot, *square);
}

bool isNear(const cv::Vec3d& point) { return cv::norm(point) < kFarthest; }

std::optional<ModelBoard> boardOf(const StitchRecord& record, const ModelCamera& placed,
                                  std::size_t index) {
  const CameraRecord& camera = record.cameras[placed.camera];
  const ShotRecord& shot = camera.shots[index];
  if (!shot.found() || !isPlace(shot.camFromBoard)) return std::nullopt;
  const std::optional<BoardSides> sides = sidesOf(record, camera, shot);
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

// Where the line of sight meets the board's plane, board coordinates.
std::optional<cv::Point2d> onBoard(const cv::Point2d& ray, const cv::Matx44d& boardFromCam) {
  const cv::Vec4d direction = boardFromCam * cv::Vec4d(ray.x, ray.y, 1, 0);
  if (std::abs(direction[2]) < kLeastFacing) return std::nullopt;
  const double s = -boardFromCam(2, 3) / direction[2];
  return cv::Point2d(boardFromCam(0, 3) + s * direction[0], boardFromCam(1, 3) + s * direction[1]);
}

} // namespace

std::optional<double> measuredSquare(const CameraRecord& camera, const ShotRecord& shot) {
  if (!camera.intrinsics || shot.corners.size() != shot.grid.size()) return std::nullopt;
  const std::vector<cv::Point2d> rays = raysThrough(lensOf(*camera.intrinsics), shot.corners);
  const cv::Matx44d boardFromCam = inversePose(shot.camFromBoard);
  std::vector<double> squares;
  for (std::size_t i = 0; i < rays.size(); ++i) {
    const double lines = std::hypot(shot.grid[i].x, shot.grid[i].y);
    const std::optional<cv::Point2d> place = onBoard(rays[i], boardFromCam);
    if (!place || lines == 0) continue;
    const double square = cv::norm(*place) / lines;
    if (std::isfinite(square) && square > 0) squares.push_back(square);
  }
  if (squares.empty()) return std::nullopt;
  const auto middle = squares.begin() + static_cast<std::ptrdiff_t>(squares.size() / 2);
  std::nth_element(squares.begin(), middle, squares.end());
  return *middle;
}

ReportModel reportModel(const StitchRecord& record) {
  ReportModel model;
  for (std::size_t i = 0; i < record.cameras.size(); ++i) {
    const CameraRecord& camera = record.cameras[i];
    if (!camera.baseFromCam) continue;
    if (!isPlace(*camera.baseFromCam)) {
      throw ToolError("\"baseFromCam\" of camera " + inQuotes(camera.id) +
                      " is no rigid transform");
    }
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
