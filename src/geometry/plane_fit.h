// Robust plane through points.
#ifndef VELMORN64_GEOMETRY_PLANE_FIT_H
#define VELMORN64_GEOMETRY_PLANE_FIT_H

#include "velmorn64.h"

namespace velmorn {

// Fits a x + b y + c z + d = 0 to the points: RANSAC over planes through three of them, then a
// least-squares plane through the winner's inliers.
//
// points      n points in one frame, any length unit
// inlierMask  n bytes; out: 1 nearer than threshold, else 0. Start it from zeros: when no
//             hypothesis has three inliers, the bytes that are 1 on entry are what is fitted
// confidence  wanted probability, 0 to 1, of having drawn one sample of inliers only
// threshold   in the points' unit; a point exactly there is out
// plane       out: a, b, c (unit normal of either sign, to float precision), d
// workBuffer  scratch, 12 n bytes from the first multiple of 16 at or after the address
//
// Rounding: centroids and normals float, everything else double.
// Returns 0, or -1: n < 3, no sample that spans a plane, fewer than three inliers, or no plane
// through them; plane and mask may then be partly written.
// Reseeds rand() with 1 unless n < 3, and draws from it: never run two at once, nor next to other
// users of rand(). Allocates nothing.
int fitPlaneByRansacV2(const tagOzKPoint3Df32* points, int n, unsigned char* inlierMask,
                       double confidence, double threshold, double plane[4], void* workBuffer);

// How many samples of three give, with the wanted confidence, one without an outlier.
//
// confidence, outlierRatio  taken as the nearest value in 0 to 1
// n                         not used
// maxIters                  upper limit of the result
//
// 0 when there are next to no outliers.
int ransacUpdateIterCount(double confidence, double outlierRatio, int n, int maxIters);

// Draws three different points with rand() until they pass the test for a degenerate sample.
//
// sample   out, the points, x y z one after another
// indices  out, which points
//
// Returns 0, or -1 after 30000 degenerate samples, or at once when n < 3.
int sampleThreePlanePoints(const tagOzKPoint3Df32* points, int n, float sample[9], int indices[3]);

} // namespace velmorn

#endif // VELMORN64_GEOMETRY_PLANE_FIT_H
