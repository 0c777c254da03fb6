// A camera in a scene.
#include "velmorn/scene_camera.h"

#include <cmath>

#include "velmorn/lens.h"
#include "velmorn/pose.h"

namespace velmorn::tool {

cv::Matx44d lookingDown(const cv::Vec3d& positionInWorld, double tiltDegrees) {
  const double tilt = tiltDegrees * CV_PI / 180;
  const double c = std::cos(tilt), s = std::sin(tilt);
  // Columns: the camera's axes in the world.
  return {c, 0,  s,  positionInWorld[0], //
          0, -1, 0,  positionInWorld[1], //
          s, 0,  -c, positionInWorld[2], //
          0, 0,  0,  1};
}

std::vector<SceneRay> raysOf(const SceneCamera& camera, const std::vector<cv::Point2d>& pixels) {
  const cv::Matx33d rotation = camera.worldFromCam.get_minor<3, 3>(0, 0);
  const cv::Vec3d origin = translationOf(camera.worldFromCam);
  std::vector<SceneRay> rays;
  rays.reserve(pixels.size());
  for (const cv::Point2d& ray : raysThrough(camera.model, pixels)) {
    rays.push_back({origin, rotation * cv::Vec3d(ray.x, ray.y, 1)});
  }
  return rays;
}

} // namespace velmorn::tool
