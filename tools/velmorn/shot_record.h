// What each image of a rig gave, for the result file and those who read it.
#ifndef VELMORN64_TOOLS_SHOT_RECORD_H
#define VELMORN64_TOOLS_SHOT_RECORD_H

#include <map>
#include <string>
#include <vector>

#include <opencv2/core.hpp>

namespace velmorn::tool {

// One image. Everything below `detail` is meant for an image with the board only.
struct ShotRecord {
  std::string image;            // path
  std::string outcome;          // "found", "no-board", "not-loaded" or "wrong-size"
  std::string detail;           // what there is to say besides; may be empty
  double reprojectionError = 0; // root mean square of the shot's own board pose, pixels
  cv::Matx44d camFromBoard = cv::Matx44d::eye();
  std::vector<cv::Point2d> corners; // pixels, (0, 0) is the centre of the first one
  std::vector<cv::Point> grid;      // the corners' grid lines, column and row; a plain board's are
                                    // left out: its corners come row by row, and all of them

  bool found() const { return outcome == "found"; }
};

struct CameraShots {
  cv::Size imageSize;            // of the first image that could be read; empty without one
  std::vector<ShotRecord> shots; // entry j shows board position j
};

using ShotMap = std::map<std::string, CameraShots>; // by camera id

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_SHOT_RECORD_H
