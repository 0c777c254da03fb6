// Eigenvalues and eigenvectors of a symmetric 3x3 matrix.
#ifndef VELMORN64_GEOMETRY_SYMMETRIC_EIGEN3_H
#define VELMORN64_GEOMETRY_SYMMETRIC_EIGEN3_H

namespace velmorn {

// Classical Jacobi: each rotation clears the largest off-diagonal element.
//
// A            3x3 symmetric, row-major; destroyed
// eigenvalues  out, in the order of the diagonal, not sorted
// V            out, 3x3 row-major; column k is the eigenvector of eigenvalues[k], of length 1 up to
//              rounding
//
// The solver stops once every off-diagonal element is below 1e-6, in the matrix's own unit: a
// matrix that is that small all over keeps V = identity.
// Returns 0, or -1 when 60 rotations were not enough (eigenvalues untouched, V without meaning). No
// matrix is known that needs as many; NaN and infinity end soon as well, in NaN.
int jacobiEigenSymmetric3(double A[9], double eigenvalues[3], double V[9]);

} // namespace velmorn

#endif // VELMORN64_GEOMETRY_SYMMETRIC_EIGEN3_H
