// Point clouds from depth images.
#ifndef VELMORN64_TOOLS_DEPTH_IMAGE_H
#define VELMORN64_TOOLS_DEPTH_IMAGE_H

#include <string>

#include <opencv2/core.hpp>

#include "velmorn/camera_file.h"
#include "velmorn/point_cloud.h"

namespace velmorn::tool {

// The 16-bit one-channel image. Throws ToolError that names the file.
cv::Mat readDepthImage(const std::string& path);

// The measured points in camera coordinates, row by row. A pixel's value times `scale` is z, not
// the distance along the line of sight; 0 is no measurement, and its pixel is counted as skipped.
//
// depth  CV_16UC1
// scale  length units per count
PointCloud pointsFromDepth(const cv::Mat& depth, const CameraModel& camera, double scale);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_DEPTH_IMAGE_H
