// Relative pose of two cameras from the board positions that both saw.
#ifndef VELMORN64_STITCHING_RELATIVE_POSE_H
#define VELMORN64_STITCHING_RELATIVE_POSE_H

#include <string>

#include "stitching/stitching_types.h"
#include "velmorn64.h"

namespace velmorn {

// Estimates the board's pose in both cameras for every shared position and fits one rigid transform
// to the board's corners as the two cameras have them.
//
// camA, camB   the camera to join, and the one to join it to
// corners      of all cameras
// intrinsics   camera matrices, 3x3
// distortions  1x12
// patternSize  inner corners per row and column
// squareSize   side of a square; the result's length unit
// minImages    least number of positions that both must have seen in full
// R, T         out, camAFromCamB: pA = R pB + T
// residual     out, mean distance of the fitted corners, length unit
//
// Returns 0, or -1 with the outputs unspecified. Lets OpenCV's exceptions pass.
int calCameraRT(const std::string& camA, const std::string& camB, const CornerMap& corners,
                const MatrixMap& intrinsics, const MatrixMap& distortions, tagOzKSize patternSize,
                float squareSize, int minImages, cv::Mat& R, cv::Mat& T, float& residual);

} // namespace velmorn

#endif // VELMORN64_STITCHING_RELATIVE_POSE_H
