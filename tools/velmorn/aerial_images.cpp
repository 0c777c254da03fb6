// The images of an aerial view.
#include "velmorn/aerial_images.h"

#include <iomanip>
#include <sstream>

#include "velmorn/colour_image.h"
#include "velmorn/depth_image.h"
#include "velmorn/grey_image.h"
#include "velmorn/lens.h"
#include "velmorn/progress.h"
#include "velmorn/tool_error.h"

namespace velmorn::tool {
namespace {

constexpr double kHarmlessShift = 1; // pixels

// The library takes the pixels as they are.
void warnAboutDistortion(const AerialJobCamera& camera, cv::Size imageSize) {
  const double shift = largestShift(camera.model, imageSize);
  if (shift <= kHarmlessShift) return;
  std::ostringstream most;
  most << std::fixed << std::setprecision(1) << shift;
  printWarning("camera " + inQuotes(camera.id) + ": the lens distortion of " +
               camera.intrinsicsPath + " moves pixels by up to " + most.str() +
               " pixels and is not taken out; give rectified images, and a camera file without "
               "distortion");
}

void readCamera(const AerialJobCamera& camera, AerialImages& images) {
  try {
    const cv::Mat depth = readDepthImage(camera.depthPath);
    if (!camera.colorPath.empty())
      images.colour.push_back(readColourImage(camera.colorPath, depth.size()));
    images.depth.push_back(depth);
  } catch (const ToolError& error) {
    throw ToolError("camera " + inQuotes(camera.id) + ": " + error.what());
  }
}

} // namespace

AerialImages readAerialImages(const AerialJob& job) {
  AerialImages images;
  for (const AerialJobCamera& camera : job.cameras) {
    readCamera(camera, images);
    const cv::Size size = images.depth.back().size();
    printProgress(images.depth.size(), job.cameras.size(),
                  camera.id + " " + fileName(camera.depthPath), sizeText(size));
    warnAboutImageSize(camera.model, camera.intrinsicsPath, size);
    warnAboutDistortion(camera, size);
  }
  return images;
}

} // namespace velmorn::tool
