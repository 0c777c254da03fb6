// Photographs of a real chessboard: the stereo pair that OpenCV's documentation comes with.
#ifndef VELMORN64_TESTS_SUPPORT_REAL_IMAGES_H
#define VELMORN64_TESTS_SUPPORT_REAL_IMAGES_H

#include <string>
#include <vector>

#include <opencv2/core.hpp>

#include "velmorn64.h"

namespace velmorn {

// One board position per index: left01.jpg .. left14.jpg and right01.jpg .. right14.jpg without
// number 10. Cameras side by side, left[j] and right[j] taken at the same moment.
struct StereoSet {
  std::vector<std::string> left;
  std::vector<std::string> right;
  cv::Size imageSize{640, 480};
  tagOzKSize patternSize{9, 6};
  float squareSize = 25; // mm
};

// Debian's package opencv-doc has the files; the environment variable VELMORN_STEREO_DATA names
// another folder. Throws with an explanation, and so fails the test, when a file is missing.
StereoSet stereoSet();

} // namespace velmorn

#endif // VELMORN64_TESTS_SUPPORT_REAL_IMAGES_H
