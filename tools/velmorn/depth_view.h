// What a depth camera measured.
#ifndef VELMORN64_TOOLS_DEPTH_VIEW_H
#define VELMORN64_TOOLS_DEPTH_VIEW_H

#include <cstddef>
#include <limits>
#include <vector>

#include <opencv2/core.hpp>

#include "velmorn/camera_file.h"

namespace velmorn::tool {

// A depth image and its lens. A pixel's count times `unit` is z in the camera's frame.
struct DepthView {
  cv::Mat counts;  // CV_16UC1; 0 is no measurement
  double unit = 1; // length units per count
  CameraModel model;
};

// Both ends belong to it; length unit.
struct DepthRange {
  double nearest = 0;
  double farthest = std::numeric_limits<double>::infinity();
};

// Turns samples out of the range, and those of 65535, where the sensor is at its end, into no
// measurement. Returns how many samples are left.
std::size_t dropUnusableSamples(DepthView& view, const DepthRange& range);

struct DepthSample {
  int column = 0;
  cv::Vec3d pointInCam; // length unit, the lens distortion taken out
};

// The samples of every `step`-th pixel of a row, from column `first`.
std::vector<DepthSample> samplesOfRow(const DepthView& view, int row, int first = 0, int step = 1);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_DEPTH_VIEW_H
