// Records of result files, made by hand.
#ifndef VELMORN64_TESTS_TOOLS_RECORD_SAMPLE_H
#define VELMORN64_TESTS_TOOLS_RECORD_SAMPLE_H

#include <string>
#include <vector>

#include "velmorn/stitch_record.h"

namespace velmorn::tool {

// An id that ends elements and attributes where it is not escaped.
inline const std::string kHostileId = "</script><img src=x onerror=\"alert('1')\">&";

inline ShotRecord usedShot(double error, const std::vector<cv::Point2d>& corners) {
  ShotRecord shot;
  shot.image = "used.png";
  shot.outcome = "found";
  shot.reprojectionError = error;
  shot.corners = corners;
  return shot;
}

inline ShotRecord refusedShot(const std::string& outcome, const std::string& detail = "") {
  ShotRecord shot;
  shot.image = "refused.png";
  shot.outcome = outcome;
  shot.detail = detail;
  return shot;
}

// At (x, y, z) in the base's frame, looking as the base does; the base when it has no parent.
inline CameraRecord cameraAt(const std::string& id, const std::string& parent,
                             const cv::Vec3d& place) {
  CameraRecord camera;
  camera.id = id;
  camera.parent = parent;
  camera.isBase = parent.empty();
  camera.depth = parent.empty() ? 0 : 1;
  camera.baseFromCam =
      cv::Matx44d(1, 0, 0, place[0], 0, 1, 0, place[1], 0, 0, 1, place[2], 0, 0, 0, 1);
  return camera;
}

inline CameraRecord unlinkedCamera(const std::string& id) {
  CameraRecord camera;
  camera.id = id;
  return camera;
}

// Cameras "left" and, 300 to the right of it, "right"; a board of 3 x 4 inner corners, square 10.
inline StitchRecord twoCameraRecord() {
  StitchRecord record;
  record.board = {3, 4};
  record.square = 10;
  record.base = "left";
  record.cameras = {cameraAt("left", "", {0, 0, 0}), cameraAt("right", "left", {300, 0, 0})};
  return record;
}

} // namespace velmorn::tool

#endif // VELMORN64_TESTS_TOOLS_RECORD_SAMPLE_H
