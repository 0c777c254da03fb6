// Inverse of a 3x3 matrix.
#ifndef VELMORN64_GEOMETRY_MATRIX_INVERSE_H
#define VELMORN64_GEOMETRY_MATRIX_INVERSE_H

namespace velmorn {

// The adjugate divided by the determinant.
//
// m    3x3, row-major
// inv  out, 3x3, row-major; must not overlap m
//
// Returns 0, or -1 when |det m| < 1e-10 (inv untouched). The limit is absolute: it suits rotations,
// whose determinant is 1, whatever the length unit. A NaN in m is passed on, with 0.
int matrixInverse(const double m[9], double inv[9]);

} // namespace velmorn

#endif // VELMORN64_GEOMETRY_MATRIX_INVERSE_H
