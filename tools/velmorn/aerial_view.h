// The aerial view of depth cameras, by the library.
#ifndef VELMORN64_TOOLS_AERIAL_VIEW_H
#define VELMORN64_TOOLS_AERIAL_VIEW_H

#include <array>
#include <cstddef>

#include <opencv2/core.hpp>

#include "velmorn/aerial_images.h"
#include "velmorn/aerial_job.h"
#include "velmorn/map_grid.h"

namespace velmorn::tool {

struct AerialView {
  MapGrid grid;
  cv::Mat picture; // CV_8UC3, a pixel per cell; blue first, as OpenCV writes it
  cv::Mat depth;   // CV_16UC1, the sample that a cell shows; 0 without one
  std::array<std::size_t, kMaxStitchCameras> cellsOf{}; // cells that show a sample of the camera
};

// The grid of the job. Throws ToolError when the tool makes no picture of it.
MapGrid aerialGrid(const AerialJob& job);

// Renders the job's view. Throws ToolError when the library refuses.
AerialView renderAerialView(const AerialJob& job, const AerialImages& images);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_AERIAL_VIEW_H
