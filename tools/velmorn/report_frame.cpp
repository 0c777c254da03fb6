// The frame that the rig is looked at in.
#include "velmorn/report_frame.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "velmorn/pose.h"
#include "velmorn/round_numbers.h"

namespace velmorn::tool {
namespace {

constexpr double kAgreeing = 0.5; // length of the mean line of sight; 1 when all are parallel
constexpr double kLeastLength = 1e-6;
constexpr double kOutermost = 0.01; // part of the cloud left out on every side
constexpr double kCellsAcross = 12;

// Of the drawn frusta, as parts of the rig's diagonal and of the least distance of two cameras.
constexpr double kFrustumOfDiagonal = 0.14;
constexpr double kFrustumOfDistance = 0.8;
constexpr double kLeastFrustumOfDiagonal = 0.04;

cv::Vec3d column(const cv::Matx44d& pose, int index) {
  return {pose(0, index), pose(1, index), pose(2, index)};
}

cv::Vec3d meanAxis(const ReportModel& model, int index) {
  cv::Vec3d sum;
  for (const ModelCamera& camera : model.cameras) sum += column(camera.baseFromCam, index);
  return sum * (1.0 / std::max<double>(1, static_cast<double>(model.cameras.size())));
}

// The axis that is level, from the base's x axis, or from z where x is upright.
cv::Vec3d levelAxis(const cv::Vec3d& up) {
  for (const cv::Vec3d& axis : {cv::Vec3d(1, 0, 0), cv::Vec3d(0, 0, 1)}) {
    const cv::Vec3d level = axis - up * up.dot(axis);
    if (cv::norm(level) > 0.1) return cv::normalize(level);
  }
  return {1, 0, 0};
}

cv::Matx33d viewFromBase(const cv::Vec3d& up) {
  const cv::Vec3d right = levelAxis(up);
  const cv::Vec3d back = right.cross(up);
  return {right[0], right[1], right[2], up[0], up[1], up[2], back[0], back[1], back[2]};
}

void includePoint(ReportFrame& frame, const cv::Vec3d& point) {
  for (int i = 0; i < 3; ++i) {
    frame.least[i] = std::min(frame.least[i], point[i]);
    frame.most[i] = std::max(frame.most[i], point[i]);
  }
}

// The value that so large a part of the values lies below.
double quantile(std::vector<double>& values, double part) {
  const auto place = static_cast<std::ptrdiff_t>(part * static_cast<double>(values.size() - 1));
  std::nth_element(values.begin(), values.begin() + place, values.end());
  return values[static_cast<std::size_t>(place)];
}

void includeCloud(ReportFrame& frame, const ColouredCloud& cloud) {
  if (cloud.points.empty()) return;
  cv::Vec3d least;
  cv::Vec3d most;
  for (int i = 0; i < 3; ++i) {
    std::vector<double> values;
    for (const cv::Vec3f& point : cloud.points) values.push_back(inView(frame, point)[i]);
    least[i] = quantile(values, kOutermost);
    most[i] = quantile(values, 1 - kOutermost);
  }
  includePoint(frame, least);
  includePoint(frame, most);
}

// What is drawn of the cameras' images reaches farther than their tips.
void includeFrusta(ReportFrame& frame, const ReportModel& model) {
  for (const ModelCamera& camera : model.cameras) {
    for (const cv::Point2d& corner : camera.corners)
      includePoint(frame, inView(frame, imagePlace(camera, corner, frame.frustumDepth)));
  }
}

double leastDistance(const ReportModel& model) {
  double least = std::numeric_limits<double>::infinity();
  for (std::size_t i = 0; i < model.cameras.size(); ++i) {
    for (std::size_t j = 0; j < i; ++j) {
      least = std::min(least, cv::norm(translationOf(model.cameras[i].baseFromCam) -
                                       translationOf(model.cameras[j].baseFromCam)));
    }
  }
  return least;
}

} // namespace

cv::Vec3d inView(const ReportFrame& frame, const cv::Vec3d& inBase) {
  return frame.viewFromBase * inBase;
}

cv::Vec3d upDirection(const ReportModel& model) {
  const cv::Vec3d sight = meanAxis(model, 2);
  if (cv::norm(sight) >= kAgreeing) return cv::normalize(-sight);
  const cv::Vec3d down = meanAxis(model, 1);
  return cv::norm(down) > kLeastLength ? cv::normalize(-down) : cv::Vec3d(0, -1, 0);
}

ReportFrame reportFrame(const ReportModel& model, const ColouredCloud& cloud) {
  ReportFrame frame;
  frame.viewFromBase = viewFromBase(upDirection(model));
  for (const cv::Vec3d& point : modelPoints(model)) includePoint(frame, inView(frame, point));
  includeCloud(frame, cloud);
  const double diagonal = std::max(kLeastLength, cv::norm(frame.most - frame.least));
  frame.frustumDepth =
      std::max(kLeastFrustumOfDiagonal * diagonal,
               std::min(kFrustumOfDiagonal * diagonal, kFrustumOfDistance * leastDistance(model)));
  frame.cell = roundNumberAtLeast(diagonal / kCellsAcross);
  includeFrusta(frame, model);
  return frame;
}

} // namespace velmorn::tool
