// Rigid transforms as 4x4 matrices, named target-from-source.
#ifndef VELMORN64_TOOLS_POSE_H
#define VELMORN64_TOOLS_POSE_H

#include <opencv2/core.hpp>

#include "velmorn64.h"

namespace velmorn::tool {

// [R T; 0 0 0 1] from a 3x3 and a 3x1 matrix of doubles.
cv::Matx44d poseFrom(const cv::Mat& R, const cv::Mat& T);

// The library's record as a matrix, element by element.
cv::Matx44d poseFrom(const tagOzKCamExtrinsic& record);

// aFromB for bFromA. The rotation has to be orthogonal: it is transposed.
cv::Matx44d inversePose(const cv::Matx44d& bFromA);

// Angle of the rotation, 0 to 180 degrees.
double rotationDegrees(const cv::Matx44d& pose);

// T: the source frame's origin in the target frame.
cv::Vec3d translationOf(const cv::Matx44d& pose);

// The point, carried from the source frame into the target frame.
cv::Vec3d transformed(const cv::Matx44d& pose, const cv::Vec3d& point);

// True when no element is NaN or infinite.
bool isFinitePose(const cv::Matx44d& pose);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_POSE_H
