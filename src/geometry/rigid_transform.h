// Rigid transform between two 3-D point sets.
#ifndef VELMORN64_GEOMETRY_RIGID_TRANSFORM_H
#define VELMORN64_GEOMETRY_RIGID_TRANSFORM_H

#include <opencv2/core.hpp>

#include "velmorn64.h"

namespace velmorn {

// Fits bFromA, b = R a + t, in the least-squares sense: H = sum (a - ca)(b - cb)^T, H = U W V^T,
// R = V diag(1, 1, det(U V^T)) U^T, t = cb - R ca (Arun, Huang, Blostein 1987, with the determinant
// that turns a reflection into a rotation).
//
// a, b   n points each, b[i] belongs to a[i], same length unit
// R, t   out, 3x3 and 3x1 CV_64FC1; written into the storage they have when it fits
// error  out, not null: mean length of b[i] - (R a[i] + t)
//
// Rounding: sums double, centroids and centred coordinates float, matrices double, each residual
// rounded to float and summed in float, all in point order.
// Returns 0, or -1 when n < 3 or a or b is null (outputs untouched). Lets OpenCV's exceptions pass.
int calRTMatFrom3dPtTo3dPt(const tagOzKPoint3Df32* a, const tagOzKPoint3Df32* b, int n, cv::Mat& R,
                           cv::Mat& t, float* error);

} // namespace velmorn

#endif // VELMORN64_GEOMETRY_RIGID_TRANSFORM_H
