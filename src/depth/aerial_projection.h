// Depth images of one or more cameras onto the grid of an aerial view.
#ifndef VELMORN64_DEPTH_AERIAL_PROJECTION_H
#define VELMORN64_DEPTH_AERIAL_PROJECTION_H

#include <opencv2/core.hpp>

#include "velmorn64.h"

namespace velmorn {

// What both kernels and the entries refuse before they look at an image: kOzkNullPointer for
// depthImages, intrinsics, aerialImage or region null, or extrinsics with more than one camera;
// kOzkBadSize for less than one camera or a resolution that is not above 0.
int checkAerialArguments(const void* depthImages, const tagOzKCamIntrinsic* intrinsics,
                         const tagOzKCamExtrinsic* extrinsics, int cameraCount,
                         const tagOzKRect2Df32* region, float resolution, const void* aerialImage);

// Each cell of the grid takes the sample with the smallest depth that falls into it, the first one
// of equal depths in the order cameras, rows, columns, and shows its colour; cells without a sample
// are black.
//
// depthImages  cameraCount matrices of 16-bit samples, 0 for no measurement; need not be continuous
// colorImages  cameraCount matrices of three bytes a pixel, at least as large
// extrinsics   firstFromCam, rows 0 and 1; entry 0 is not read; may be null with one camera
// aerialImage  out, CV_8UC3, written in place when it has the grid's size already. May share memory
//              with the images
//
// Rounding: positions in float, the reciprocals of fx and fy computed in double.
// Returns kOzkSuccess, or with aerialImage untouched kOzkNullPointer or kOzkBadSize. Throws when
// memory runs out, aerialImage untouched.
int projectDepthToAerialWithColor(const cv::Mat* depthImages, const cv::Mat* colorImages,
                                  const tagOzKCamIntrinsic* intrinsics,
                                  const tagOzKCamExtrinsic* extrinsics, int cameraCount,
                                  const tagOzKRect2Df32* region, float resolution,
                                  cv::Mat* aerialImage);

// The same, showing the cells' depths by renderDepthFalseColor. The image is black when that has no
// memory.
int projectDepthToAerial(const cv::Mat* depthImages, const tagOzKCamIntrinsic* intrinsics,
                         const tagOzKCamExtrinsic* extrinsics, int cameraCount,
                         const tagOzKRect2Df32* region, float resolution, cv::Mat* aerialImage);

} // namespace velmorn

#endif // VELMORN64_DEPTH_AERIAL_PROJECTION_H
