// The board's pose in one image.
#include "velmorn/shot_pose.h"

#include <cmath>

#include <opencv2/calib3d.hpp>

#include "velmorn/pose.h"

namespace velmorn::tool {

std::optional<ShotPose> solveShotPose(const std::vector<cv::Point3f>& onBoard,
                                      const std::vector<cv::Point2f>& pixels,
                                      const CameraModel& camera) {
  const cv::Matx33d matrix(camera.intrinsic.matrix);
  const cv::Matx<double, 1, 12> distortion(camera.distortion.coeffs);
  cv::Mat rotationVector, rotation, t;
  std::vector<cv::Point2f> projected;
  try {
    if (!cv::solvePnP(onBoard, pixels, matrix, distortion, rotationVector, t)) return {};
    cv::projectPoints(onBoard, rotationVector, t, matrix, distortion, projected);
  } catch (const cv::Exception&) { // such as all corners on a line
    return {};
  }
  cv::Rodrigues(rotationVector, rotation);
  ShotPose pose;
  pose.camFromBoard = poseFrom(rotation, t);
  pose.reprojectionError =
      cv::norm(pixels, projected, cv::NORM_L2) / std::sqrt(static_cast<double>(pixels.size()));
  if (!isFinitePose(pose.camFromBoard) || !std::isfinite(pose.reprojectionError)) return {};
  return pose;
}

} // namespace velmorn::tool
