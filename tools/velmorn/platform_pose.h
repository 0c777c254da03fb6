// Where a camera stands over a platform.
#ifndef VELMORN64_TOOLS_PLATFORM_POSE_H
#define VELMORN64_TOOLS_PLATFORM_POSE_H

#include <string>

#include <opencv2/core.hpp>

#include "velmorn/camera_file.h"
#include "velmorn64.h"

namespace velmorn::tool {

// How the platform's frame lies on the board.
struct PlatformBoard {
  tagOzKSize size{};          // inner corners per row and column
  float square = 0;           // length unit
  cv::Vec3f offset;           // added to the camera's place, length unit
  bool keepBoardAxes = false; // else turned by half a turn about x
};

// The image with 8 bits per channel, grey or in OpenCV's channel order blue, green, red. Throws
// ToolError that names the file.
cv::Mat readBoardImage(const std::string& path);

// platformFromCam by the library. Throws ToolError that says why there is none.
//
// image  CV_8UC1, or CV_8UC3 in the order blue, green, red
tagOzKCamExtrinsic findPlatform(const cv::Mat& image, const CameraModel& camera,
                                const PlatformBoard& board);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_PLATFORM_POSE_H
