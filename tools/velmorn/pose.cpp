// Rigid transforms as 4x4 matrices, named target-from-source.
#include "velmorn/pose.h"

#include <algorithm>
#include <cmath>

namespace velmorn::tool {

cv::Matx44d poseFrom(const cv::Mat& R, const cv::Mat& T) {
  cv::Matx44d pose = cv::Matx44d::eye();
  for (int row = 0; row < 3; ++row) {
    for (int column = 0; column < 3; ++column) pose(row, column) = R.at<double>(row, column);
    pose(row, 3) = T.at<double>(row);
  }
  return pose;
}

cv::Matx44d poseFrom(const tagOzKCamExtrinsic& record) { return cv::Matx44d(record.data); }

cv::Matx44d inversePose(const cv::Matx44d& bFromA) {
  const cv::Matx33d aFromBRotation = bFromA.get_minor<3, 3>(0, 0).t();
  const cv::Vec3d aFromBTranslation = -(aFromBRotation * translationOf(bFromA));
  cv::Matx44d aFromB = cv::Matx44d::eye();
  for (int row = 0; row < 3; ++row) {
    for (int column = 0; column < 3; ++column) aFromB(row, column) = aFromBRotation(row, column);
    aFromB(row, 3) = aFromBTranslation(row);
  }
  return aFromB;
}

double rotationDegrees(const cv::Matx44d& pose) {
  // Twice the sine comes with the axis, twice the cosine from the trace: exact at both ends.
  const cv::Vec3d axis(pose(2, 1) - pose(1, 2), pose(0, 2) - pose(2, 0), pose(1, 0) - pose(0, 1));
  const double twiceCosine = pose(0, 0) + pose(1, 1) + pose(2, 2) - 1;
  return std::atan2(cv::norm(axis), twiceCosine) * 180 / CV_PI;
}

cv::Vec3d translationOf(const cv::Matx44d& pose) {
  return cv::Vec3d(pose(0, 3), pose(1, 3), pose(2, 3));
}

cv::Vec3d transformed(const cv::Matx44d& pose, const cv::Vec3d& point) {
  const cv::Vec4d moved = pose * cv::Vec4d(point[0], point[1], point[2], 1);
  return {moved[0], moved[1], moved[2]};
}

bool isFinitePose(const cv::Matx44d& pose) {
  return std::all_of(pose.val, pose.val + 16, [](double value) { return std::isfinite(value); });
}

} // namespace velmorn::tool
