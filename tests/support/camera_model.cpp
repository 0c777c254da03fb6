// Cameras with known parameters.
#include "support/camera_model.h"

#include <algorithm>

#include <opencv2/calib3d.hpp>

namespace velmorn {
namespace {

// Undoes the distortion of one normalised point by fixed-point iteration, far below a hundredth of
// a pixel for the lenses of the tests.
cv::Vec2d undistort(const cv::Vec<double, 12>& k, const cv::Vec2d& distorted) {
  constexpr int kIterations = 100;
  constexpr double kDone = 1e-10;
  cv::Vec2d p = distorted;
  for (int i = 0; i < kIterations; ++i) {
    const double x = p[0], y = p[1], r2 = x * x + y * y, r4 = r2 * r2, r6 = r4 * r2;
    const double radial =
        (1 + k[0] * r2 + k[1] * r4 + k[4] * r6) / (1 + k[5] * r2 + k[6] * r4 + k[7] * r6);
    const cv::Vec2d shift(2 * k[2] * x * y + k[3] * (r2 + 2 * x * x) + k[8] * r2 + k[9] * r4,
                          k[2] * (r2 + 2 * y * y) + 2 * k[3] * x * y + k[10] * r2 + k[11] * r4);
    const cv::Vec2d next = (distorted - shift) * (1 / radial);
    const double step = cv::norm(next - p);
    p = next;
    if (step < kDone) break;
  }
  return p;
}

} // namespace

tagOzKCamIntrinsic CameraModel::intrinsicRecord() const {
  tagOzKCamIntrinsic record{};
  std::copy(matrix.val, matrix.val + 9, record.matrix);
  return record;
}

tagOzKCamDistortion CameraModel::distortionRecord() const {
  tagOzKCamDistortion record{};
  std::copy(distortion.val, distortion.val + 12, record.coeffs);
  return record;
}

CameraModel plainCamera(cv::Size imageSize, double focal) {
  CameraModel camera;
  camera.imageSize = imageSize;
  camera.matrix = cv::Matx33d(focal, 0, imageSize.width * 0.5 + 3.2, 0, focal * 1.003,
                              imageSize.height * 0.5 - 4.1, 0, 0, 1);
  return camera;
}

CameraModel distortedCamera(cv::Size imageSize, double focal) {
  CameraModel camera = plainCamera(imageSize, focal);
  camera.distortion = {-0.18, 0.06, 6e-4, -4e-4, -0.01, 0.02, -0.01, 2e-3, 3e-4, -1e-4, 2e-4, 1e-4};
  return camera;
}

std::vector<cv::Point2f> projectPoints(const CameraModel& camera, const cv::Matx44d& camFromBoard,
                                       const std::vector<cv::Point3f>& pointsInBoard) {
  cv::Vec3d rotationVector;
  cv::Rodrigues(camFromBoard.get_minor<3, 3>(0, 0), rotationVector);
  const cv::Vec3d translation(camFromBoard(0, 3), camFromBoard(1, 3), camFromBoard(2, 3));
  std::vector<cv::Point2f> pixels;
  cv::projectPoints(pointsInBoard, rotationVector, translation, camera.matrix, camera.distortion,
                    pixels);
  return pixels;
}

cv::Mat_<cv::Vec2f> pixelCornerRays(const CameraModel& camera) {
  const cv::Matx33d& K = camera.matrix;
  cv::Mat_<cv::Vec2f> rays(camera.imageSize.height + 1, camera.imageSize.width + 1);
  for (int y = 0; y < rays.rows; ++y)
    for (int x = 0; x < rays.cols; ++x) {
      const cv::Vec2d seen((x - 0.5 - K(0, 2)) / K(0, 0), (y - 0.5 - K(1, 2)) / K(1, 1));
      rays(y, x) = undistort(camera.distortion, seen);
    }
  return rays;
}

} // namespace velmorn
