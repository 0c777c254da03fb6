// The board's pose in one image.
#ifndef VELMORN64_TOOLS_SHOT_POSE_H
#define VELMORN64_TOOLS_SHOT_POSE_H

#include <optional>
#include <vector>

#include <opencv2/core.hpp>

#include "velmorn/camera_file.h"

namespace velmorn::tool {

struct ShotPose {
  cv::Matx44d camFromBoard = cv::Matx44d::eye();
  double reprojectionError = 0; // root mean square, pixels
};

// The pose by OpenCV's solvePnP, as the library computes it. Nothing when it has none or when a
// number comes out that is not finite.
std::optional<ShotPose> solveShotPose(const std::vector<cv::Point3f>& onBoard,
                                      const std::vector<cv::Point2f>& pixels,
                                      const CameraModel& camera);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_SHOT_POSE_H
