// The images of a merged cloud.
#include "velmorn/merge_images.h"

#include <cstdint>

#include "velmorn/colour_image.h"
#include "velmorn/depth_image.h"
#include "velmorn/lens.h"
#include "velmorn/progress.h"
#include "velmorn/tool_error.h"

namespace velmorn::tool {

CloudCamera readMergeCamera(const MergeJob& job, std::size_t index) {
  const MergeJobCamera& source = job.cameras[index];
  CloudCamera camera;
  camera.index = static_cast<std::uint8_t>(index);
  camera.frameFromCam = job.frameFromBase * source.baseFromCam;
  camera.view.unit = job.depthUnit;
  camera.view.model = source.model;
  try {
    camera.view.counts = readDepthImage(source.depthPath);
    const cv::Size size = camera.view.counts.size();
    if (!source.colorPath.empty()) camera.colour = readColourImage(source.colorPath, size);
    warnAboutImageSize(source.model, source.intrinsicsPath, size);
  } catch (const ToolError& error) {
    throw ToolError("camera " + inQuotes(source.id) + ": " + error.what());
  }
  if (dropUnusableSamples(camera.view, job.range) == 0) {
    printWarning("camera " + inQuotes(source.id) + ": " + source.depthPath +
                 " has no usable depth sample");
  }
  return camera;
}

} // namespace velmorn::tool
