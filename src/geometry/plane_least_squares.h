// Least-squares plane through points, and their mean distance from a plane.
#ifndef VELMORN64_GEOMETRY_PLANE_LEAST_SQUARES_H
#define VELMORN64_GEOMETRY_PLANE_LEAST_SQUARES_H

#include "velmorn64.h"

namespace velmorn {

// Principal axes of a point set: the eigenvectors of its population covariance.
//
// points       n points, x y z one after another, any length unit
// centroid     out
// axes         out, three unit vectors one after another, by decreasing magnitude of their
//              eigenvalue: the third is the normal of the plane. Its sign is not defined
// eigenvalues  out, in the order of the axes, squared length unit; may be null
// n            at least 1
//
// Rounding: coordinates summed in float and in point order, centroid and differences from it float,
// covariance double, axes rounded to float at the end.
// Returns 0, or -1 when n < 1 or the eigen solver gives up (the centroid is then written already).
// NaN or infinite points give NaN.
int fitPlaneLeastSquares(const float* points, float centroid[3], float axes[9], double* eigenvalues,
                         int n);

// Mean distance of n points from the plane through `origin` whose normal, of any length, is the
// third row of `axes` (elements 6, 7, 8; the others are not read). Computed and summed in float, in
// point order; NaN when n is 0.
float meanPointToPlaneDistance(const float axes[9], const float origin[3],
                               const tagOzKPoint3Df32* points, int n);

} // namespace velmorn

#endif // VELMORN64_GEOMETRY_PLANE_LEAST_SQUARES_H
