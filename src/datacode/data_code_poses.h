// Board poses of one camera from its images of a data-code board.
#ifndef VELMORN64_DATACODE_DATA_CODE_POSES_H
#define VELMORN64_DATACODE_DATA_CODE_POSES_H

#include <string>

#include <opencv2/core.hpp>

#include "velmorn64.h"

namespace velmorn {

// One camera, as its poses need it.
struct DataCodeCamera {
  std::string id;
  cv::Mat matrix;     // 3x3, pixels
  cv::Mat distortion; // 1x12
};

// One image of a camera.
struct DataCodeShot {
  std::string path;
  std::string cornerImagePath; // where the annotated image goes; empty for none
};

// What an image gave.
struct ShotPose {
  int fatal = 0;        // not 0: the whole run stops with this code
  cv::Mat camFromBoard; // 4x4, CV_64FC1; empty when the image gave none
};

// Finds the corners of one image and the board's pose from them. Everything that only spoils the
// image is reported, to the log and to the console.
//
// minCornerNum  fewest corners, compared as unsigned: a negative number refuses every image
ShotPose findShotPose(const DataCodeCamera& camera, const DataCodeShot& shot, int minCornerNum);

} // namespace velmorn

#endif // VELMORN64_DATACODE_DATA_CODE_POSES_H
