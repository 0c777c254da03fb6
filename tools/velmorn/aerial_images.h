// The images of an aerial view.
#ifndef VELMORN64_TOOLS_AERIAL_IMAGES_H
#define VELMORN64_TOOLS_AERIAL_IMAGES_H

#include <vector>

#include <opencv2/core.hpp>

#include "velmorn/aerial_job.h"

namespace velmorn::tool {

struct AerialImages {
  std::vector<cv::Mat> depth;  // CV_16UC1, one per camera
  std::vector<cv::Mat> colour; // CV_8UC3 of the same sizes; none without colour images
};

// Reads the images that the job names, with progress lines. Warns about a camera file for another
// size, and about a lens distortion that moves a pixel by more than a pixel. Throws ToolError that
// names the camera and the file.
AerialImages readAerialImages(const AerialJob& job);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_AERIAL_IMAGES_H
