// Cameras with known parameters.
#ifndef VELMORN64_TESTS_SUPPORT_CAMERA_MODEL_H
#define VELMORN64_TESTS_SUPPORT_CAMERA_MODEL_H

#include <vector>

#include <opencv2/core.hpp>

#include "velmorn64.h"

namespace velmorn {

// A camera: what projects a point to pixels.
struct CameraModel {
  cv::Size imageSize{640, 480};
  cv::Matx33d matrix = cv::Matx33d::eye();                      // pixels
  cv::Vec<double, 12> distortion = cv::Vec<double, 12>::all(0); // OpenCV's order

  tagOzKCamIntrinsic intrinsicRecord() const;
  tagOzKCamDistortion distortionRecord() const;
};

// A camera of the given focal length with its principal point near the image's centre, without
// distortion and with a usual lens's distortion (barrel, some tangential and thin prism part).
CameraModel plainCamera(cv::Size imageSize, double focal);
CameraModel distortedCamera(cv::Size imageSize, double focal);

// Points of the board's frame in pixels.
std::vector<cv::Point2f> projectPoints(const CameraModel& camera, const cv::Matx44d& camFromBoard,
                                       const std::vector<cv::Point3f>& pointsInBoard);

// x/z and y/z of the lines of sight through the pixels' corners, with the lens distortion taken
// out; what tool::PlaneRenderer takes.
cv::Mat_<cv::Vec2f> pixelCornerRays(const CameraModel& camera);

} // namespace velmorn

#endif // VELMORN64_TESTS_SUPPORT_CAMERA_MODEL_H
