// The surface that a depth image shows, as small planes.
#ifndef VELMORN64_TOOLS_DEPTH_SURFACE_H
#define VELMORN64_TOOLS_DEPTH_SURFACE_H

#include <optional>
#include <vector>

#include <opencv2/core.hpp>

#include "velmorn/depth_view.h"

namespace velmorn::tool {

// The plane through a pixel's neighbourhood: normal . p = 1, in the camera's frame.
struct LocalPlane {
  cv::Vec3d normal;   // 1 / length unit
  double spacing = 0; // from one sample to the next, across the line of sight, length unit

  double distanceTo(const cv::Vec3d& pointInCam) const;
};

class DepthSurface {
 public:
  // The view has to outlive the surface.
  explicit DepthSurface(const DepthView& view);

  // The points that are in the image, each with the pixel that sees it; the pixel need not have a
  // sample.
  struct SeenPoint {
    cv::Vec3d pointInCam;
    cv::Point pixel;
  };
  std::vector<SeenPoint> seenOf(const std::vector<cv::Vec3d>& pointsInCam) const;

  // The plane through the 5 x 5 samples around the pixel. Nothing at the image's border, where more
  // than five of them are missing, and where they do not lie near one plane, as at an edge.
  std::optional<LocalPlane> planeAt(cv::Point pixel) const;

 private:
  std::optional<cv::Point> pixelAt(const cv::Point2d& place) const;
  bool isSeenThrough(cv::Point pixel, const cv::Vec3d& pointInCam) const;
  double pixelSide() const;

  const DepthView& view_;
  cv::Mat rays_; // CV_64FC2: x/z and y/z of every pixel's line of sight
};

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_DEPTH_SURFACE_H
