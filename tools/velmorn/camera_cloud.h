// One camera's part of a merged cloud.
#ifndef VELMORN64_TOOLS_CAMERA_CLOUD_H
#define VELMORN64_TOOLS_CAMERA_CLOUD_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

#include <opencv2/core.hpp>

#include "velmorn/depth_view.h"

namespace velmorn::tool {

struct CloudPoint {
  cv::Vec3f position;      // in the cloud's frame, length unit
  cv::Vec3b colour;        // blue, green, red
  std::uint8_t camera = 0; // index in the job
};

struct CloudCamera {
  DepthView view;
  cv::Mat colour; // CV_8UC3 of the depth image's size; without one the points have cameraColour()
  std::uint8_t index = 0;
  cv::Matx44d frameFromCam = cv::Matx44d::eye();
};

// A colour that tells camera `index` from the others, also for readers who are blind to some
// colours: the seven of Okabe and Ito that show on black and on white, then greys.
cv::Vec3b cameraColour(std::size_t index);

// Hands over the camera's points row by row and returns their number. A sample that the lens model
// or the pose carries out of single precision is left out.
std::size_t liftCamera(const CloudCamera& camera,
                       const std::function<void(const std::vector<CloudPoint>&)>& take);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_CAMERA_CLOUD_H
