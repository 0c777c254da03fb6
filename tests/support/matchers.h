// How far apart two rigid transforms are, and matchers that say which part failed.
#ifndef VELMORN64_TESTS_SUPPORT_MATCHERS_H
#define VELMORN64_TESTS_SUPPORT_MATCHERS_H

#include <gmock/gmock.h>
#include <opencv2/core.hpp>

#include "velmorn64.h"

namespace velmorn {

// 4x4 transforms from the forms in which the library gives them. The base camera's own entry of a
// stitching result is no rigid transform and must not be given here.
cv::Matx44d transformOf(const tagOzKCamExtrinsic& extrinsic);
cv::Matx44d transformOf(const cv::Mat& R, const cv::Mat& T);
cv::Matx44d transformOf(const cv::Matx33d& R, const cv::Vec3d& T);

// The inverse of a rigid transform.
cv::Matx44d inverseOf(const cv::Matx44d& transform);

// Length of the translation part.
double translationLength(const cv::Matx44d& transform);

// Angle of the rotation between the two, degrees; NaN when one of them holds a NaN.
double rotationDegreesApart(const cv::Matx44d& a, const cv::Matx44d& b);

// Distance between the two translation parts, length unit.
double translationApart(const cv::Matx44d& a, const cv::Matx44d& b);

// Matches a transform within an angle and a length of the expected one.
testing::Matcher<const cv::Matx44d&> extrinsicNear(const cv::Matx44d& expected, double degrees,
                                                   double length);

} // namespace velmorn

#endif // VELMORN64_TESTS_SUPPORT_MATCHERS_H
