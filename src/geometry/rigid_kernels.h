// The three passes over the points of a rigid fit, in plain and in vector form.
//
// Every form gives the same bits: each value is built from the same operations in the same order,
// the vector forms only work on several independent sums at once. Nothing but intrinsics may be
// used in the vector forms' files: an inline library function compiled there could be picked by the
// linker for the whole library and stop it on an older processor.
#ifndef VELMORN64_GEOMETRY_RIGID_KERNELS_H
#define VELMORN64_GEOMETRY_RIGID_KERNELS_H

#include "foundation/platform.h"
#include "velmorn64.h"

namespace velmorn {

// All of them add to what the caller hands in, so that a form can leave its rest to another one.

// Adds x, y, z of n points in double, in point order.
using AddPoints = void (*)(const tagOzKPoint3Df32* a, const tagOzKPoint3Df32* b, int n,
                           double sumA[3], double sumB[3]);

// Adds the outer products (a[i] - ca)(b[i] - cb)^T, differences in float, products in double, to
// `lanes` partial sums per element: point i goes to partial sum i % lanes, and where lanes is 4 the
// last n % 4 points go to partial sum 0. sums[lane][3 * row + column].
using AddProducts4 = void (*)(const tagOzKPoint3Df32* a, const tagOzKPoint3Df32* b, int n,
                              const float ca[3], const float cb[3], double sums[4][9]);
using AddProducts2 = void (*)(const tagOzKPoint3Df32* a, const tagOzKPoint3Df32* b, int n,
                              const float ca[3], const float cb[3], double sums[2][9]);

// Returns `sum` with |b[i] - (R a[i] + t)| added, each length rounded to float, in float and in
// point order. R row-major.
using AddResiduals = float (*)(const tagOzKPoint3Df32* a, const tagOzKPoint3Df32* b, int n,
                               const double R[9], const double t[3], float sum);

struct RigidKernels {
  AddPoints addPoints;
  AddProducts4 addProducts4;
  AddProducts2 addProducts2;
  AddResiduals addResiduals;
};

// The plain form, in every build.
const RigidKernels& plainRigidKernels();

// The forms for a vector level; in builds for other processors than x86-64 there are none.
#if defined(VELMORN_X86_KERNELS)
const RigidKernels& avx2RigidKernels();
const RigidKernels& avx512RigidKernels();
#endif

// The form for a vector level that the processor supports.
const RigidKernels& rigidKernels(VectorLevel level);

} // namespace velmorn

#endif // VELMORN64_GEOMETRY_RIGID_KERNELS_H
