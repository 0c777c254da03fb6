// `velmorn field`: what a camera covers at a distance.
#include "velmorn/field_command.h"

#include <cmath>
#include <iostream>

#include "velmorn/camera_file.h"
#include "velmorn/lens.h"
#include "velmorn/round_numbers.h"
#include "velmorn/tool_error.h"

namespace velmorn::tool {
namespace {

constexpr float kLargestCoordinate = 16777215; // what the library takes into the rectangle

cv::Size imageSizeOf(const FieldOptions& options, const CameraModel& camera) {
  if (options.imageSize.area() == 0 && camera.imageSize.area() == 0) {
    throw ToolError(options.intrinsics + " does not say the image size; give --size");
  }
  if (options.imageSize.area() == 0) return camera.imageSize;
  warnAboutImageSize(camera, options.intrinsics, options.imageSize);
  return options.imageSize;
}

tagOzKRect2Df32 fieldOf(const CameraModel& camera, cv::Size imageSize, float distance) {
  tagOzKRect2Df32 field{};
  const int status = ozkCalFieldSizeByWorkdistance(imageSize.width, imageSize.height,
                                                   &camera.intrinsic, distance, &field);
  if (status != kOzkSuccess) {
    throw ToolError("the library refused the camera with status " + std::to_string(status));
  }
  for (const float edge : {field.x1, field.y1, field.x2, field.y2}) {
    if (std::abs(edge) < kLargestCoordinate) continue;
    throw ToolError("the field reaches 16777215 length units from the axis, which is the limit");
  }
  return field;
}

// Along the image's width.
double degreesOf(const CameraModel& camera, cv::Size imageSize) {
  return 2 * std::atan(imageSize.width / (2 * camera.intrinsic.matrix[0])) * 180 / CV_PI;
}

int sampleFactor(float degrees, int pixels, float distance) {
  const int factor = ozkCalDepthImgSampleFactor(degrees, pixels, distance);
  if (factor < 0) throw ToolError("the sample factor is beyond what an int holds");
  return factor;
}

void printField(const CameraModel& camera, const tagOzKRect2Df32& field, float distance) {
  const double x1 = static_cast<double>(field.x1);
  const double y1 = static_cast<double>(field.y1);
  const double x2 = static_cast<double>(field.x2);
  const double y2 = static_cast<double>(field.y2);
  const double* const m = camera.intrinsic.matrix;
  std::cout << "x1, y1, x2, y2  " << shortNumberText(x1) << ", " << shortNumberText(y1) << ", "
            << shortNumberText(x2) << ", " << shortNumberText(y2) << '\n'
            << "width, height   " << shortNumberText(x2 - x1) << ", " << shortNumberText(y2 - y1)
            << '\n'
            << "per pixel       " << shortNumberText(static_cast<double>(distance) / m[0]) << ", "
            << shortNumberText(static_cast<double>(distance) / m[4]) << '\n';
}

void printSampleFactor(int factor) { std::cout << "sample factor   " << factor << '\n'; }

} // namespace

void runField(const FieldOptions& options) {
  if (options.intrinsics.empty()) {
    printSampleFactor(sampleFactor(options.degrees, options.pixels, options.distance));
    return;
  }
  const CameraModel camera = readCameraFile(options.intrinsics);
  const cv::Size imageSize = imageSizeOf(options, camera);
  const tagOzKRect2Df32 field = fieldOf(camera, imageSize, options.distance);
  const auto degrees = static_cast<float>(degreesOf(camera, imageSize));
  const int factor = sampleFactor(degrees, imageSize.width, options.distance);
  printField(camera, field, options.distance);
  std::cout << "angle of view   " << shortNumberText(static_cast<double>(degrees)) << " degrees\n";
  printSampleFactor(factor);
}

} // namespace velmorn::tool
