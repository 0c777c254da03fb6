// Lines of sight of a camera's pixels.
#include "velmorn/lens.h"

#include <algorithm>

#include <opencv2/calib3d.hpp>
#include <opencv2/imgproc.hpp>

#include "velmorn/grey_image.h"
#include "velmorn/progress.h"

namespace velmorn::tool {
namespace {

bool isDistorted(const CameraModel& camera) {
  const double* coefficients = camera.distortion.coeffs;
  return std::any_of(coefficients, coefficients + 12, [](double value) { return value != 0; });
}

// OpenCV goes from the distorted place to the other one step by step.
std::vector<cv::Point2d> undistorted(const CameraModel& camera,
                                     const std::vector<cv::Point2d>& pixels) {
  const cv::Mat distortion(1, 12, CV_64FC1, const_cast<double*>(camera.distortion.coeffs));
  const cv::TermCriteria stop(cv::TermCriteria::COUNT + cv::TermCriteria::EPS, 50, 1e-6);
  std::vector<cv::Point2d> rays;
  cv::undistortPoints(pixels, rays, cv::Matx33d(camera.intrinsic.matrix), distortion, cv::noArray(),
                      cv::noArray(), stop);
  return rays;
}

} // namespace

std::vector<cv::Point2d> raysThrough(const CameraModel& camera,
                                     const std::vector<cv::Point2d>& pixels) {
  if (isDistorted(camera) && !pixels.empty()) return undistorted(camera, pixels);
  const double* m = camera.intrinsic.matrix;
  std::vector<cv::Point2d> rays;
  rays.reserve(pixels.size());
  for (const cv::Point2d& pixel : pixels) {
    rays.emplace_back((pixel.x - m[2]) / m[0], (pixel.y - m[5]) / m[4]);
  }
  return rays;
}

std::vector<cv::Point2d> withoutDistortion(const CameraModel& camera,
                                           const std::vector<cv::Point2d>& pixels) {
  if (!isDistorted(camera)) return pixels;
  const double* m = camera.intrinsic.matrix;
  std::vector<cv::Point2d> places;
  for (const cv::Point2d& ray : raysThrough(camera, pixels)) {
    places.emplace_back(ray.x * m[0] + m[2], ray.y * m[4] + m[5]);
  }
  return places;
}

double largestShift(const CameraModel& camera, cv::Size imageSize) {
  const double right = imageSize.width - 1;
  const double bottom = imageSize.height - 1;
  const std::vector<cv::Point2d> corners = {{0, 0}, {right, 0}, {0, bottom}, {right, bottom}};
  const std::vector<cv::Point2d> places = withoutDistortion(camera, corners);
  double largest = 0;
  for (std::size_t i = 0; i < corners.size(); ++i) {
    largest = std::max(largest, cv::norm(places[i] - corners[i]));
  }
  return largest;
}

void warnAboutImageSize(const CameraModel& camera, const std::string& cameraPath,
                        cv::Size imageSize) {
  if (camera.imageSize.area() == 0 || camera.imageSize == imageSize) return;
  printWarning("the image is " + sizeText(imageSize) + ", but " + cameraPath + " is for " +
               sizeText(camera.imageSize));
}

} // namespace velmorn::tool
