// Whether a simulated camera sees a board.
#ifndef VELMORN64_TOOLS_SIMULATE_VIEW_H
#define VELMORN64_TOOLS_SIMULATE_VIEW_H

#include <optional>
#include <vector>

#include <opencv2/core.hpp>

#include "velmorn/scene_camera.h"

namespace velmorn::tool {

// A plain board. Its frame: origin at the first inner corner, x along the rows, y along the
// columns, z away from a camera that looks at its printed side upright.
struct PlainBoard {
  cv::Size corners;  // inner ones
  double square = 0; // length unit
};

constexpr double kPlainQuietZone = 0.7; // white paper around the squares, squares

// Outline of the paper and the middle of the board, in its frame.
std::vector<cv::Point3d> outlineOf(const PlainBoard& board);
cv::Point3d middleOf(const PlainBoard& board);

// Where the camera sees a point of its own frame; nothing for one that is not near its image, where
// a lens's polynomial may bring it back into it.
std::optional<cv::Point2d> pixelOf(const CameraModel& camera, const cv::Point3d& pointInCam);

enum class PlainView {
  kNotWhole, // not all of the paper is in the image
  kUsable,   // all of it, with its first corner the one that the search returns first
  kPoor,     // all of it, but at too flat an angle or too small to be found for certain
  kTurned,   // all of it, but the search would begin at another corner
};
PlainView plainViewOf(const SceneCamera& camera, const PlainBoard& board,
                      const cv::Matx44d& worldFromBoard);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_SIMULATE_VIEW_H
