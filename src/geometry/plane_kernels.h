// The passes over the points of a plane fit that test distances, in plain and in vector form.
//
// The vector forms give the plain form's results: each point's value is built from the same
// operations in the same order, in a lane of its own. As in rigid_kernels.h, nothing but intrinsics
// may be used in the vector forms' files.
#ifndef VELMORN64_GEOMETRY_PLANE_KERNELS_H
#define VELMORN64_GEOMETRY_PLANE_KERNELS_H

#include "foundation/platform.h"
#include "velmorn64.h"

namespace velmorn {

// A plane a x + b y + c z + d = 0 with its test: a point is an inlier when
// |a x + b y + c z + d| <= cutoff, left to right in double. A negative or NaN cutoff has no
// inliers; a NaN value is an outlier.
struct PlaneTest {
  double a, b, c, d;
  double cutoff;
};

// Counts inliers. Gives up as soon as the rest cannot bring the count above `toBeat`; what it
// then returns is some number that is not above `toBeat`.
using CountInliers = int (*)(const tagOzKPoint3Df32* points, int n, const PlaneTest& test,
                             int toBeat);

// Writes 1 for an inlier and 0 for an outlier, n bytes.
using MarkInliers = void (*)(const tagOzKPoint3Df32* points, int n, const PlaneTest& test,
                             unsigned char* mask);

struct PlaneKernels {
  CountInliers countInliers;
  MarkInliers markInliers;
};

// The plain form, in every build.
const PlaneKernels& plainPlaneKernels();

// The forms for a vector level; in builds for other processors than x86-64 there are none.
#if defined(VELMORN_X86_KERNELS)
const PlaneKernels& avx2PlaneKernels();
const PlaneKernels& avx512PlaneKernels();
#endif

// The form for a vector level that the processor supports.
const PlaneKernels& planeKernels(VectorLevel level);

} // namespace velmorn

#endif // VELMORN64_GEOMETRY_PLANE_KERNELS_H
