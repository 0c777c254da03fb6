// Cameras with known parameters.
#include "support/camera_model.h"

#include <algorithm>

#include <opencv2/calib3d.hpp>

namespace velmorn {

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

} // namespace velmorn
