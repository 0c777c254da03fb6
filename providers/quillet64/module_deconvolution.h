// Modules that the blur has run together.
#ifndef VELMORN64_PROVIDERS_QUILLET64_MODULE_DECONVOLUTION_H
#define VELMORN64_PROVIDERS_QUILLET64_MODULE_DECONVOLUTION_H

#include <opencv2/core.hpp>

#include "quillet64/blurred_code.h"

namespace velmorn::quillet {

// Estimates all modules of an upright code together: the dark and light modules that, blurred,
// come nearest to the pixels.
//
//   minimise  sum over pixels (seen - known - sum over modules weight * module)^2
//             + r * sum over modules (module - 1/2)^2
//   modules between 0 and 1, the borders as they are in every symbol;
//
// then single modules and pairs of neighbours are flipped as long as that comes nearer.
//
// 1 where dark. A bounded number of passes over the shares.
cv::Mat_<uchar> deconvolvedModules(const BlurredCode& code);

} // namespace velmorn::quillet

#endif // VELMORN64_PROVIDERS_QUILLET64_MODULE_DECONVOLUTION_H
