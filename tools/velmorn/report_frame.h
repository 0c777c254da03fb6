// The frame that the rig is looked at in, its ground and its measures.
#ifndef VELMORN64_TOOLS_REPORT_FRAME_H
#define VELMORN64_TOOLS_REPORT_FRAME_H

#include <vector>

#include <opencv2/core.hpp>

#include "velmorn/coloured_cloud.h"
#include "velmorn/report_model.h"

namespace velmorn::tool {

// The view's frame has x to the right, y up and z towards the one who looks; its origin is the base
// camera's.
struct ReportFrame {
  cv::Matx33d viewFromBase = cv::Matx33d::eye();
  cv::Vec3d least;         // box around the rig and the cloud, view's frame; of the cloud without
  cv::Vec3d most;          // the outermost hundredth on every side
  double cell = 0;         // side of a square of the ground's grid: a round number
  double frustumDepth = 0; // from a camera's tip to its drawn image
};

// Up is against the cameras' mean line of sight. Where these lead apart, as those of cameras around
// an object, up is against the mean of the images' y axes.
cv::Vec3d upDirection(const ReportModel& model);

// x of the view is the base's x axis as far as it is level.
ReportFrame reportFrame(const ReportModel& model, const ColouredCloud& cloud);

// The point in the view's frame.
cv::Vec3d inView(const ReportFrame& frame, const cv::Vec3d& inBase);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_REPORT_FRAME_H
