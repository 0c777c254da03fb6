// Which parts of a camera's image the board was seen in.
#ifndef VELMORN64_TOOLS_COVERAGE_H
#define VELMORN64_TOOLS_COVERAGE_H

#include <opencv2/core.hpp>

#include "velmorn/stitch_record.h"

namespace velmorn::tool {

// Cells along the longer side of an image.
constexpr int kCoverageCells = 32;

struct Coverage {
  cv::Mat shots;      // CV_32SC1: number of shots that cover the cell; empty without an image size
  double percent = 0; // cells that at least one shot covers
  std::size_t used = 0; // shots that were looked at
};

// A shot covers a cell when the cell's centre lies within the convex hull of the shot's corners.
// Cells are square, or nearly so: the shorter side has its share of them, rounded, at least one.
Coverage coverageOf(const CameraRecord& camera);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_COVERAGE_H
