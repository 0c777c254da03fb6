// A camera in a scene.
#ifndef VELMORN64_TOOLS_SCENE_CAMERA_H
#define VELMORN64_TOOLS_SCENE_CAMERA_H

#include <vector>

#include <opencv2/core.hpp>

#include "velmorn/camera_file.h"
#include "velmorn/scene_geometry.h"

namespace velmorn::tool {

struct SceneCamera {
  CameraModel model; // with its image size; lens distortion is rendered
  cv::Matx44d worldFromCam = cv::Matx44d::eye();
};

// worldFromCam of a camera that looks down onto the belt: image x along the belt, image y against
// the world's y axis. A tilt above 0 turns the line of sight towards the world's x axis.
cv::Matx44d lookingDown(const cv::Vec3d& positionInWorld, double tiltDegrees = 0);

// The lines of sight through image points, world. Their directions have z = 1 in the camera's
// frame: a hit's `s` is its depth.
std::vector<SceneRay> raysOf(const SceneCamera& camera, const std::vector<cv::Point2d>& pixels);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_SCENE_CAMERA_H
