// What a camera's own images say about its intrinsics.
#ifndef VELMORN64_TOOLS_LENS_REFIT_H
#define VELMORN64_TOOLS_LENS_REFIT_H

#include <optional>

#include <opencv2/core.hpp>

#include "velmorn/stitch_record.h"

namespace velmorn::tool {

// fx, fy, cx, cy in pixels.
struct LensRefit {
  cv::Vec4d given;
  cv::Vec4d found;
  cv::Vec4d deviations;  // standard deviations of what was found
  double givenError = 0; // reprojection errors, root mean square, pixels
  double foundError = 0;
};

// OpenCV's calibration with the given intrinsics as the start; the focal lengths, the principal
// point and two radial coefficients are free, the rest stays. Nothing with fewer than three images
// with the board, without intrinsics or image size, or when OpenCV gives up.
std::optional<LensRefit> refitLens(const StitchRecord& run, const CameraRecord& camera);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_LENS_REFIT_H
