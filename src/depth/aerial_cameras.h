// The cameras of an aerial view, their samples brought into its cells.
#ifndef VELMORN64_DEPTH_AERIAL_CAMERAS_H
#define VELMORN64_DEPTH_AERIAL_CAMERAS_H

#include <cstddef>
#include <cstdint>
#include <vector>

#include <opencv2/core.hpp>

#include "depth/aerial_cells.h"
#include "depth/aerial_kernels.h"

namespace velmorn {

// The cameras and the grid of one call.
struct AerialCameras {
  AerialCameras() = default;
  // extrinsics are firstFromCam; the first is not read.
  AerialCameras(std::vector<cv::Mat> depthImages, std::vector<cv::Mat> colorImages,
                const tagOzKCamIntrinsic* intrinsics, const tagOzKCamExtrinsic* extrinsics,
                const AerialGrid& aerialGrid, std::size_t cells);

  std::vector<cv::Mat> depths, colors; // no colours for a view of depths
  std::vector<CameraFactors> factors;
  std::vector<float> columnFactors; // room for those of one camera
  AerialGrid grid{};
  std::size_t cellCount = 0;
};

// Whether colours may go by keys: one comparison and one store a sample instead of three, for grids
// whose keys, four times as large as depths, stay in the caches, and samples that can be numbered.
bool fitKeys(const AerialCameras& cameras);

// Where keys fit and there are colours.
//
// cells  cellCount keys, out
// image  three bytes a cell, out
void projectByKeys(AerialCameras& cameras, SampleKey* cells, unsigned char* image);

// Any grid, with colours or without. All cells are written.
void projectByDepths(AerialCameras& cameras, AerialCells cells);

} // namespace velmorn

#endif // VELMORN64_DEPTH_AERIAL_CAMERAS_H
