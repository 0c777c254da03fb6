// One camera's entry in a stitching result.
#ifndef VELMORN64_STITCHING_RESULT_ENTRY_H
#define VELMORN64_STITCHING_RESULT_ENTRY_H

#include <opencv2/core.hpp>

#include "velmorn64.h"

namespace velmorn {

// The base camera's entry: elements 0, 4, 10 and 15 are 1, all others 0.
void writeBaseEntry(tagOzKCamExtrinsic& extrinsic);

// [R T; 0 0 0 1] from a 3x3 and a 3x1 matrix, CV_64FC1.
void writeCameraEntry(const cv::Mat& R, const cv::Mat& T, tagOzKCamExtrinsic& extrinsic);

// A rows x columns matrix, CV_64FC1, of a record's row-major elements.
cv::Mat rowMajor(int rows, int columns, const double* elements);

} // namespace velmorn

#endif // VELMORN64_STITCHING_RESULT_ENTRY_H
