// Job files: the input of an aerial view.
#ifndef VELMORN64_TOOLS_AERIAL_JOB_H
#define VELMORN64_TOOLS_AERIAL_JOB_H

#include <string>
#include <vector>

#include <opencv2/core.hpp>

#include "velmorn/depth_job.h"

namespace velmorn::tool {

struct AerialJobCamera : DepthJobCamera {
  cv::Matx44d firstFromCam = cv::Matx44d::eye(); // length unit
};

struct AerialJob {
  cv::Vec4d region;      // x1, y1, x2, y2 in the first camera's x/y plane, length unit
  double resolution = 0; // length units per cell
  double depthUnit = 1;  // length units per count of the depth images
  std::vector<AerialJobCamera> cameras; // in the file's order

  bool hasColour() const { return !cameras.front().colorPath.empty(); }
};

// Reads a job file and everything it names but the images. Relative paths in it are relative to its
// folder. Throws ToolError that names the file, and the camera or key, for anything that cannot be
// used.
AerialJob readAerialJob(const std::string& path);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_AERIAL_JOB_H
