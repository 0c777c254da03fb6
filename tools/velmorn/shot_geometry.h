// The board of a run in the images of a result file.
#ifndef VELMORN64_TOOLS_SHOT_GEOMETRY_H
#define VELMORN64_TOOLS_SHOT_GEOMETRY_H

#include <cstddef>
#include <vector>

#include <opencv2/core.hpp>

#include "velmorn/stitch_record.h"

namespace velmorn::tool {

// The corners' places on the board, in their order, length unit.
std::vector<cv::Point3f> placesOnBoard(const StitchRecord& run, const ShotRecord& shot);

// The outermost places of the corners: of the rectangle around them.
std::vector<cv::Vec3d> outermostPlaces(const StitchRecord& run, const ShotRecord& shot);

// Mean distance of corners that are neighbours on the board, pixels; 0 when none are.
double meanSquarePixels(const StitchRecord& run, const ShotRecord& shot);

// The board's normal in the camera's frame.
cv::Vec3d boardNormal(const ShotRecord& shot);

// Indices of the board positions that both cameras saw.
std::vector<std::size_t> sharedPositions(const CameraRecord& a, const CameraRecord& b);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_SHOT_GEOMETRY_H
