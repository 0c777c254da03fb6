// Whether a simulated camera sees a board.
#include "velmorn/simulate_view.h"

#include <algorithm>
#include <cmath>

#include <opencv2/calib3d.hpp>

#include "velmorn/pose.h"

namespace velmorn::tool {
namespace {

constexpr double kMargin = 6;          // pixels between the paper and the image's border
constexpr double kSteepestView = 50;   // degrees off the board's normal
constexpr double kSmallestSquare = 16; // pixels
constexpr double kLeastUpright = 0.5;  // cosine of the board's turn in the image
constexpr double kNearImage = 1.5;     // half images from the middle

cv::Point3d carried(const cv::Matx44d& targetFromSource, const cv::Point3d& p) {
  const cv::Vec4d q = targetFromSource * cv::Vec4d(p.x, p.y, p.z, 1);
  return {q[0], q[1], q[2]};
}

cv::Point2d distorted(const CameraModel& camera, const cv::Point3d& pointInCam) {
  const cv::Mat distortion(1, 12, CV_64FC1, const_cast<double*>(camera.distortion.coeffs));
  std::vector<cv::Point2d> pixels;
  cv::projectPoints(std::vector<cv::Point3d>{pointInCam}, cv::Vec3d(), cv::Vec3d(),
                    cv::Matx33d(camera.intrinsic.matrix), distortion, pixels);
  return pixels.front();
}

bool isInside(const cv::Size& image, const cv::Point2d& pixel) {
  return pixel.x > kMargin && pixel.x < image.width - 1 - kMargin && pixel.y > kMargin &&
         pixel.y < image.height - 1 - kMargin;
}

bool isWhole(const CameraModel& camera, const PlainBoard& board, const cv::Matx44d& camFromBoard) {
  const std::vector<cv::Point3d> outline = outlineOf(board);
  return std::all_of(outline.begin(), outline.end(), [&](const cv::Point3d& point) {
    const auto pixel = pixelOf(camera, carried(camFromBoard, point));
    return pixel && isInside(camera.imageSize, *pixel);
  });
}

// The board's axes at its middle, in pixels per square.
struct Axes {
  cv::Point2d x, y;
};

Axes axesInImage(const CameraModel& camera, const PlainBoard& board,
                 const cv::Matx44d& camFromBoard) {
  const cv::Point3d middle = middleOf(board);
  const auto seen = [&](const cv::Point3d& p) {
    return distorted(camera, carried(camFromBoard, p));
  };
  const cv::Point2d origin = seen(middle);
  return {seen(middle + cv::Point3d(board.square, 0, 0)) - origin,
          seen(middle + cv::Point3d(0, board.square, 0)) - origin};
}

} // namespace

std::vector<cv::Point3d> outlineOf(const PlainBoard& board) {
  const double low = -(1 + kPlainQuietZone) * board.square;
  const double right = (board.corners.width + kPlainQuietZone) * board.square;
  const double bottom = (board.corners.height + kPlainQuietZone) * board.square;
  return {{low, low, 0}, {right, low, 0}, {right, bottom, 0}, {low, bottom, 0}};
}

cv::Point3d middleOf(const PlainBoard& board) {
  return {(board.corners.width - 1) * board.square / 2,
          (board.corners.height - 1) * board.square / 2, 0};
}

std::optional<cv::Point2d> pixelOf(const CameraModel& camera, const cv::Point3d& pointInCam) {
  if (pointInCam.z <= 0) return std::nullopt;
  const double* m = camera.intrinsic.matrix;
  const cv::Point2d ideal(pointInCam.x / pointInCam.z * m[0] + m[2],
                          pointInCam.y / pointInCam.z * m[4] + m[5]);
  const cv::Point2d middle(camera.imageSize.width / 2.0, camera.imageSize.height / 2.0);
  const cv::Point2d off = ideal - middle;
  if (std::abs(off.x) > kNearImage * middle.x || std::abs(off.y) > kNearImage * middle.y) {
    return std::nullopt;
  }
  return distorted(camera, pointInCam);
}

PlainView plainViewOf(const SceneCamera& camera, const PlainBoard& board,
                      const cv::Matx44d& worldFromBoard) {
  const cv::Matx44d camFromBoard = inversePose(camera.worldFromCam) * worldFromBoard;
  if (!isWhole(camera.model, board, camFromBoard)) return PlainView::kNotWhole;
  const cv::Point3d middle = carried(camFromBoard, middleOf(board));
  const cv::Vec3d normal(camFromBoard(0, 2), camFromBoard(1, 2), camFromBoard(2, 2));
  const double cosine = normal.dot(cv::normalize(cv::Vec3d(middle.x, middle.y, middle.z)));
  if (cosine < std::cos(kSteepestView * CV_PI / 180)) return PlainView::kPoor;
  const Axes axes = axesInImage(camera.model, board, camFromBoard);
  if (axes.y.y < kLeastUpright * cv::norm(axes.y)) return PlainView::kTurned;
  const bool isLarge = std::min(cv::norm(axes.x), cv::norm(axes.y)) >= kSmallestSquare;
  return isLarge ? PlainView::kUsable : PlainView::kPoor;
}

} // namespace velmorn::tool
