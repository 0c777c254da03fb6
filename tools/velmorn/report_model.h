// The rig as shapes: what the three-dimensional view and the view from above show.
#ifndef VELMORN64_TOOLS_REPORT_MODEL_H
#define VELMORN64_TOOLS_REPORT_MODEL_H

#include <array>
#include <cstddef>
#include <optional>
#include <vector>

#include <opencv2/core.hpp>

#include "velmorn/stitch_record.h"

namespace velmorn::tool {

struct ModelCamera {
  std::size_t camera = 0;             // index in the record
  std::optional<std::size_t> parent;  // the same of the camera that it is linked to
  cv::Matx44d baseFromCam;            // length unit
  std::array<cv::Point2d, 4> corners; // x/z and y/z of the image's corners, in a circle from the
                                      // upper left one; without intrinsics those of a usual lens
};

struct ModelBoard {
  std::size_t camera = 0;           // index in the record
  std::size_t shot = 0;             // index in the camera's shots
  std::array<cv::Vec3d, 4> outline; // in a circle from the board's origin, base frame
};

struct ReportModel {
  std::vector<ModelCamera> cameras; // those with a place
  std::vector<ModelBoard> boards;   // as these cameras saw them
};

// Leaves out cameras without a place and boards whose size the record does not say. Throws
// ToolError that names the camera for one too far away to be drawn.
ReportModel reportModel(const StitchRecord& record);

// Where a place of the image is drawn, base frame: at so much depth in front of the camera.
//
// ray  x/z and y/z
cv::Vec3d imagePlace(const ModelCamera& camera, const cv::Point2d& ray, double depth);

// The points that the model consists of, base frame; cameras count as their tips.
std::vector<cv::Vec3d> modelPoints(const ReportModel& model);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_REPORT_MODEL_H
