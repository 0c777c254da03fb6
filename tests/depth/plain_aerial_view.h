// The aerial view written down step by step, sample by sample: the yardstick for the bytes.
#ifndef VELMORN64_TESTS_DEPTH_PLAIN_AERIAL_VIEW_H
#define VELMORN64_TESTS_DEPTH_PLAIN_AERIAL_VIEW_H

#include <opencv2/core.hpp>

#include "velmorn64.h"

namespace velmorn {

// The image that the two kernels give, for arguments that they accept and continuous matrices.
// colors may be null.
cv::Mat plainAerialView(const cv::Mat* depths, const cv::Mat* colors,
                        const tagOzKCamIntrinsic* intrinsics, const tagOzKCamExtrinsic* extrinsics,
                        int cameraCount, const tagOzKRect2Df32& region, float resolution);

// The colours of a grid of depths, 65535 where there is none.
void plainFalseColor(const unsigned short* depth, int width, int height, unsigned char* output);

} // namespace velmorn

#endif // VELMORN64_TESTS_DEPTH_PLAIN_AERIAL_VIEW_H
