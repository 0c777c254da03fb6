// One camera's part of a merged cloud.
#include "velmorn/camera_cloud.h"

#include <array>
#include <cmath>

#include "velmorn/pose.h"

namespace velmorn::tool {
namespace {

// M. Okabe and K. Ito, "Color Universal Design"; blue, green, red.
const std::array<cv::Vec3b, 10> kCameraColours = {{{0, 159, 230},
                                                   {233, 180, 86},
                                                   {115, 158, 0},
                                                   {66, 228, 240},
                                                   {178, 114, 0},
                                                   {0, 94, 213},
                                                   {167, 121, 204},
                                                   {200, 200, 200},
                                                   {130, 130, 130},
                                                   {70, 70, 70}}};

bool isFinite(const cv::Vec3f& point) {
  return std::isfinite(point[0]) && std::isfinite(point[1]) && std::isfinite(point[2]);
}

} // namespace

cv::Vec3b cameraColour(std::size_t index) { return kCameraColours[index % kCameraColours.size()]; }

std::size_t liftCamera(const CloudCamera& camera,
                       const std::function<void(const std::vector<CloudPoint>&)>& take) {
  const cv::Matx33d R = camera.frameFromCam.get_minor<3, 3>(0, 0);
  const cv::Vec3d T = translationOf(camera.frameFromCam);
  std::size_t number = 0;
  std::vector<CloudPoint> points;
  for (int row = 0; row < camera.view.counts.rows; ++row) {
    points.clear();
    for (const DepthSample& sample : samplesOfRow(camera.view, row)) {
      CloudPoint point;
      point.position = cv::Vec3f(R * sample.pointInCam + T);
      point.colour = camera.colour.empty() ? cameraColour(camera.index)
                                           : camera.colour.at<cv::Vec3b>(row, sample.column);
      point.camera = camera.index;
      if (isFinite(point.position)) points.push_back(point);
    }
    number += points.size();
    take(points);
  }
  return number;
}

} // namespace velmorn::tool
