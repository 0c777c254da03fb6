// Lenses and places of simulated cameras.
#include "velmorn/simulate_cameras.h"

#include <algorithm>
#include <cmath>

#include <opencv2/calib3d.hpp>

#include "velmorn/lens.h"
#include "velmorn/pose.h"
#include "velmorn/simulate_random.h"
#include "velmorn/tool_error.h"

namespace velmorn::tool {
namespace {

constexpr double kRadians = CV_PI / 180;

// Of the default arrangement, in heights of the cameras.
constexpr double kRowSpacing = 5.0 / 12;
constexpr double kRingRadius = 0.35;

// How far a camera is off it at most.
constexpr double kPlaceSpread = 0.01; // heights
constexpr double kAngleSpread = 2;    // degrees
constexpr double kFocalSpread = 0.01; // of the focal length
constexpr double kCentreSpread = 5;   // pixels

constexpr double kLensTolerance = 0.05; // pixels

cv::Matx44d rotationAbout(const cv::Vec3d& axis, double degrees) {
  cv::Matx33d rotation;
  cv::Rodrigues(axis * (degrees * kRadians), rotation);
  return poseFrom(cv::Mat(rotation), cv::Mat::zeros(3, 1, CV_64F));
}

// Towards the origin from a point above the ground.
SimulatedPlace lookingAtMiddle(const cv::Vec3d& position) {
  SimulatedPlace place;
  place.position = position;
  place.tiltAlong = std::atan2(-position[0], position[2]) / kRadians;
  place.tiltAcross = std::asin(-position[1] / cv::norm(position)) / kRadians;
  return place;
}

SimulatedPlace placeInRow(const SimulateJob& job, std::size_t i) {
  const double fromMiddle =
      static_cast<double>(i) - static_cast<double>(job.cameras.size() - 1) / 2;
  SimulatedPlace place;
  const double spacing = job.spacing.value_or(kRowSpacing * job.height);
  place.position = {fromMiddle * spacing, 0, job.height};
  return place;
}

SimulatedPlace placeInRing(const SimulateJob& job, std::size_t i) {
  const double step = 2 * CV_PI / static_cast<double>(job.cameras.size());
  const double angle = CV_PI + step * static_cast<double>(i);
  const double radius =
      job.spacing ? *job.spacing / (2 * std::sin(step / 2)) : kRingRadius * job.height;
  return lookingAtMiddle({radius * std::cos(angle), radius * std::sin(angle), job.height});
}

// Draws a number of -1 to 1 times the spread.
double offBy(double spread, cv::RNG& random) { return spread * random.uniform(-1.0, 1.0); }

SimulatedPlace defaultPlace(const SimulateJob& job, std::size_t i, cv::RNG& random) {
  SimulatedPlace place =
      job.kind == SimulatedKind::kConveyor ? placeInRow(job, i) : placeInRing(job, i);
  for (int axis = 0; axis < 3; ++axis) {
    place.position[axis] += offBy(kPlaceSpread * job.height, random);
  }
  place.tiltAlong += offBy(kAngleSpread, random);
  place.tiltAcross += offBy(kAngleSpread, random);
  place.turn += offBy(kAngleSpread, random);
  return place;
}

CameraModel modelOf(const SimulatedLens& lens, cv::RNG& random) {
  const double width = lens.imageSize.width, height = lens.imageSize.height;
  const double fieldFocal = width / 2 / std::tan(lens.fieldOfView / 2 * kRadians);
  // All are drawn, so that one setting does not change the others.
  const double focalFactor = 1 + offBy(kFocalSpread, random);
  const double centreX = (width - 1) / 2 + offBy(kCentreSpread, random);
  const double centreY = (height - 1) / 2 + offBy(kCentreSpread, random);
  const double focal = lens.focal.value_or(fieldFocal * focalFactor);
  CameraModel model;
  model.intrinsic = {{focal, 0, centreX, 0, focal, centreY, 0, 0, 1}};
  std::copy(lens.distortion.begin(), lens.distortion.end(), model.distortion.coeffs);
  model.imageSize = lens.imageSize;
  return model;
}

// Goes from the image's border to the lines of sight and back.
void requireUsableLens(const CameraModel& model, const std::string& id) {
  constexpr int kSteps = 8; // along each side
  const double right = model.imageSize.width - 1, bottom = model.imageSize.height - 1;
  std::vector<cv::Point2d> border;
  for (int i = 0; i <= kSteps; ++i) {
    const double x = right * i / kSteps, y = bottom * i / kSteps;
    border.insert(border.end(), {{x, 0}, {x, bottom}, {0, y}, {right, y}});
  }
  std::vector<cv::Point3d> sights;
  for (const cv::Point2d& ray : raysThrough(model, border)) sights.emplace_back(ray.x, ray.y, 1);
  const cv::Mat distortion(1, 12, CV_64FC1, const_cast<double*>(model.distortion.coeffs));
  std::vector<cv::Point2d> seen;
  cv::projectPoints(sights, cv::Vec3d(), cv::Vec3d(), cv::Matx33d(model.intrinsic.matrix),
                    distortion, seen);
  for (std::size_t i = 0; i < border.size(); ++i) {
    if (cv::norm(seen[i] - border[i]) < kLensTolerance) continue;
    throw ToolError("camera " + inQuotes(id) +
                    ": \"distortion\" is too strong, the image's border cannot be traced back");
  }
}

} // namespace

cv::Matx44d worldFromCamAt(const SimulatedPlace& place) {
  // A turn about the camera's own x axis brings its line of sight from y to -y of the camera, which
  // is the world's y.
  return lookingDown(place.position, place.tiltAlong) * rotationAbout({1, 0, 0}, place.tiltAcross) *
         rotationAbout({0, 0, 1}, place.turn);
}

std::vector<SceneCamera> simulatedCameras(const SimulateJob& job) {
  cv::RNG random(randomStart(job.seed, RandomUse::kCameras));
  std::vector<SceneCamera> cameras;
  for (std::size_t i = 0; i < job.cameras.size(); ++i) {
    const SimulatedCamera& asked = job.cameras[i];
    SceneCamera camera;
    camera.model = modelOf(asked.lens, random);
    requireUsableLens(camera.model, simulatedId(i));
    const SimulatedPlace place = asked.place ? *asked.place : defaultPlace(job, i, random);
    camera.worldFromCam = worldFromCamAt(place);
    cameras.push_back(camera);
  }
  return cameras;
}

} // namespace velmorn::tool
