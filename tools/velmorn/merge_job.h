// Job files: the input of a merged cloud.
#ifndef VELMORN64_TOOLS_MERGE_JOB_H
#define VELMORN64_TOOLS_MERGE_JOB_H

#include <optional>
#include <string>
#include <vector>

#include <opencv2/core.hpp>

#include "velmorn/depth_job.h"
#include "velmorn/depth_view.h"

namespace velmorn::tool {

struct MergeJobCamera : DepthJobCamera {
  cv::Matx44d baseFromCam = cv::Matx44d::eye(); // length unit
};

struct MergeJob {
  double depthUnit = 1;                           // length units per count of the depth images
  DepthRange range;                               // of the depths to keep
  std::optional<double> voxel;                    // side, length unit; nothing: keep all points
  std::string frameName = "base";                 // of the cloud's frame, such as "plane"
  cv::Matx44d frameFromBase = cv::Matx44d::eye(); // length unit
  std::vector<MergeJobCamera> cameras;            // in the file's order
};

// Reads a job file and everything it names but the images. Relative paths in it are relative to its
// folder. Throws ToolError that names the file, and the camera or key, for anything that cannot be
// used.
MergeJob readMergeJob(const std::string& path);

// The job without a file: a folder with a folder per camera, as `velmorn stitch` takes it. Cameras
// are the folders with a depth.png (.tif, .tiff); color.png (.jpg, .jpeg, .bmp, .tif, .tiff) beside
// it is the colour image. The intrinsics are those of the result file.
MergeJob readMergeFolder(const std::string& folder, const std::string& resultPath);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_MERGE_JOB_H
