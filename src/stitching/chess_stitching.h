// The run of a chessboard stitching: checks, corners, base camera, tree, chaining.
#ifndef VELMORN64_STITCHING_CHESS_STITCHING_H
#define VELMORN64_STITCHING_CHESS_STITCHING_H

#include <string>
#include <vector>

#include "stitching/stitching_types.h"
#include "velmorn64.h"

namespace velmorn {

// Links all cameras to one base camera.
//
// camIDs        2 to 10 identifiers
// chessImgPaths, intrinsics, distortions
//               per identifier: equally many images, a 3x3 camera matrix, a 1x12 distortion
// rotations, translations, residuals
//               out, cleared first: per camera other than the base, chained along the tree; for a
//               camera linked to the base directly camFromBase
// baseCamIdx    in: the requested base, or anything outside 0 to n-1 to take the camera with the
//               shallowest tree; out, on success: the base
// the rest      as for findChessCornerPtByImgs and calCameraRT
//
// Returns 0; kOzkBadSize for a bad input, before any image is read; -1 when a camera could not be
// linked. Lets OpenCV's exceptions pass.
int calCameraRTByChessImgs(const std::vector<std::string>& camIDs,
                           const ImagePathMap& chessImgPaths, const MatrixMap& intrinsics,
                           const MatrixMap& distortions, tagOzKSize patternSize, float squareSize,
                           MatrixMap& rotations, MatrixMap& translations, ResidualMap& residuals,
                           int minImages, bool saveCornerImages, int& baseCamIdx);

} // namespace velmorn

#endif // VELMORN64_STITCHING_CHESS_STITCHING_H
