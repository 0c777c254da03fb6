// Lines of sight of a camera's pixels.
#ifndef VELMORN64_TOOLS_LENS_H
#define VELMORN64_TOOLS_LENS_H

#include <string>
#include <vector>

#include <opencv2/core.hpp>

#include "velmorn/camera_file.h"

namespace velmorn::tool {

// x/z and y/z of the lines of sight, in the camera's frame, with the lens distortion taken out.
std::vector<cv::Point2d> raysThrough(const CameraModel& camera,
                                     const std::vector<cv::Point2d>& pixels);

// Where the pixels would be without lens distortion.
std::vector<cv::Point2d> withoutDistortion(const CameraModel& camera,
                                           const std::vector<cv::Point2d>& pixels);

// How far the lens distortion moves an image's corners at most, pixels.
double largestShift(const CameraModel& camera, cv::Size imageSize);

// Warns when the camera file says that it is for another image size.
void warnAboutImageSize(const CameraModel& camera, const std::string& cameraPath,
                        cv::Size imageSize);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_LENS_H
