// The plane fit written down step by step, without a thought of speed and without the library's own
// code: the yardstick for the bytes, the return codes and the generator's state.
#ifndef VELMORN64_TESTS_GEOMETRY_PLAIN_PLANE_FIT_H
#define VELMORN64_TESTS_GEOMETRY_PLAIN_PLANE_FIT_H

#include "velmorn64.h"

namespace velmorn::plain {

// As the functions of the same names in src/geometry.
int fitPlaneByRansacV2(const tagOzKPoint3Df32* points, int n, unsigned char* inlierMask,
                       double confidence, double threshold, double plane[4], void* workBuffer);
int ransacUpdateIterCount(double confidence, double outlierRatio, int n, int maxIters);
int sampleThreePlanePoints(const tagOzKPoint3Df32* points, int n, float sample[9], int indices[3]);
int fitPlaneLeastSquares(const float* points, float centroid[3], float axes[9], double* eigenvalues,
                         int n);
int jacobiEigenSymmetric3(double A[9], double eigenvalues[3], double V[9]);
float meanPointToPlaneDistance(const float axes[9], const float origin[3],
                               const tagOzKPoint3Df32* points, int n);

} // namespace velmorn::plain

#endif // VELMORN64_TESTS_GEOMETRY_PLAIN_PLANE_FIT_H
