// Camera files: the intrinsics of one camera.
#ifndef VELMORN64_TOOLS_CAMERA_FILE_H
#define VELMORN64_TOOLS_CAMERA_FILE_H

#include <string>

#include <opencv2/core.hpp>

#include "velmorn64.h"

namespace velmorn::tool {

// One camera's lens, as the library takes it.
struct CameraModel {
  tagOzKCamIntrinsic intrinsic{};
  tagOzKCamDistortion distortion{};
  cv::Size imageSize; // pixels; empty when the file does not say
};

// What a calibration found.
struct Calibration {
  cv::Size imageSize;         // pixels
  cv::Mat cameraMatrix;       // 3x3, CV_64FC1
  cv::Mat distortion;         // one row or column, CV_64FC1, OpenCV's order
  double reprojectionRms = 0; // pixels
};

// Reads OpenCV's YAML, XML or JSON, or ROS camera_info YAML.
//
// Coefficients that the file leaves out are 0; the tilt coefficients, which the library's model
// does not have, must be 0. Throws ToolError that names the file for one that cannot be read, for a
// camera matrix that is not fx 0 cx, 0 fy cy, 0 0 1 with fx and fy above 0, for a number that is
// not finite and for another lens model.
CameraModel readCameraFile(const std::string& path);

// OpenCV's YAML form of the calibration, as readCameraFile reads it.
std::string cameraFileText(const Calibration& calibration);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_CAMERA_FILE_H
