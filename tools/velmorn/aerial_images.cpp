// The images of an aerial view.
#include "velmorn/aerial_images.h"

#include <iomanip>
#include <sstream>

#include <opencv2/imgproc.hpp>

#include "velmorn/depth_image.h"
#include "velmorn/grey_image.h"
#include "velmorn/image_file.h"
#include "velmorn/lens.h"
#include "velmorn/progress.h"
#include "velmorn/tool_error.h"

namespace velmorn::tool {
namespace {

constexpr double kHarmlessShift = 1; // pixels

// Grey images, such as infrared ones, are shown grey.
cv::Mat readColour(const std::string& path, cv::Size depthSize) {
  cv::Mat image = requireImage(path);
  if (image.type() == CV_8UC1) cv::cvtColor(image, image, cv::COLOR_GRAY2BGR);
  if (image.type() != CV_8UC3) {
    throw ToolError(path + ": not a colour image of 8 bits without alpha, but " + pixelText(image));
  }
  if (image.size() != depthSize) {
    throw ToolError(path + " is " + sizeText(image.size()) + ", but the depth image is " +
                    sizeText(depthSize));
  }
  return image;
}

// The library takes the pixels as they are.
void warnAboutDistortion(const AerialJobCamera& camera, cv::Size imageSize) {
  const double shift = largestShift(camera.model, imageSize);
  if (shift <= kHarmlessShift) return;
  std::ostringstream pixels;
  pixels << std::fixed << std::setprecision(1) << shift;
  printWarning("camera " + inQuotes(camera.id) + ": the lens distortion of " +
               camera.intrinsicsPath + " moves pixels by up to " + pixels.str() +
               " pixels and is not taken out; give rectified images, and a camera file without "
               "distortion");
}

void readCamera(const AerialJobCamera& camera, AerialImages& images) {
  try {
    const cv::Mat depth = readDepthImage(camera.depthPath);
    if (!camera.colorPath.empty())
      images.colour.push_back(readColour(camera.colorPath, depth.size()));
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
