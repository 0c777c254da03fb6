// The rigid fit written down step by step with OpenCV's matrices: the yardstick for the bytes.
#ifndef VELMORN64_TESTS_GEOMETRY_PLAIN_RIGID_TRANSFORM_H
#define VELMORN64_TESTS_GEOMETRY_PLAIN_RIGID_TRANSFORM_H

#include <opencv2/core.hpp>

#include "velmorn64.h"

namespace velmorn {

// bFromA as calRTMatFrom3dPtTo3dPt gives it, for n >= 3 and non-null arguments.
void plainRigidTransform(const tagOzKPoint3Df32* a, const tagOzKPoint3Df32* b, int n, cv::Mat& R,
                         cv::Mat& t, float* error);

} // namespace velmorn

#endif // VELMORN64_TESTS_GEOMETRY_PLAIN_RIGID_TRANSFORM_H
