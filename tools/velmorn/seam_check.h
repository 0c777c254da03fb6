// How well the clouds of cameras that see the same surfaces agree.
#ifndef VELMORN64_TOOLS_SEAM_CHECK_H
#define VELMORN64_TOOLS_SEAM_CHECK_H

#include <cstddef>
#include <vector>

#include <opencv2/core.hpp>

#include "velmorn/depth_view.h"

namespace velmorn::tool {

struct SeamCamera {
  DepthView view;
  cv::Matx44d baseFromCam = cv::Matx44d::eye();
};

// Two cameras' seam. A point of one camera is in view when it lies on a line of sight along which
// the other one shows a smooth surface. It is compared when that surface is near, within ten of its
// sample spacings; farther ones are other surfaces, in front of the point or behind it.
struct Seam {
  std::size_t first = 0, second = 0; // indices of the cameras
  std::size_t inView = 0;            // of up to 10000 points of either camera, evenly taken
  std::size_t compared = 0;          // of these
  double median = 0;                 // distance from a compared point to the other camera's
  double percentile90 = 0;           // surface, both ways together, length unit

  bool overlaps() const; // enough points in view to tell
  bool agrees() const;   // and enough of them compared for median and percentile
};

// Distances are to the plane through the other camera's neighbourhood, not to its nearest point,
// which is half a sample spacing away on a perfect seam. The neighbourhood is one of pixels and so
// does not depend on the depths' noise. One entry per pair of cameras.
std::vector<Seam> checkSeams(const std::vector<SeamCamera>& cameras);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_SEAM_CHECK_H
