// A finished run, made by hand.
#ifndef VELMORN64_TESTS_TOOLS_STITCHED_SAMPLE_H
#define VELMORN64_TESTS_TOOLS_STITCHED_SAMPLE_H

#include <string>

#include "velmorn/stitch_run.h"

namespace velmorn::tool {

// The base "left" and "right", a quarter turn about z and (3, 4, 12) from it: 13 away.
inline StitchedRig stitchedSample(const std::string& rightId = "right") {
  StitchedCamera left;
  left.id = "left";
  for (const int one : {0, 4, 10, 15}) left.libraryEntry.data[one] = 1;
  left.residual = 0.0F;
  left.imagesFound = left.imagesTotal = 14;

  StitchedCamera right;
  right.id = rightId;
  right.place.baseFromCam = cv::Matx44d(0, -1, 0, 3, 1, 0, 0, 4, 0, 0, 1, 12, 0, 0, 0, 1);
  right.place.camFromBase = cv::Matx44d(0, 1, 0, -4, -1, 0, 0, 3, 0, 0, 1, -12, 0, 0, 0, 1);
  right.place.parent = "left";
  right.place.depth = 1;
  right.residual = 0.25F;
  for (int i = 0; i < 16; ++i) right.libraryEntry.data[i] = right.place.camFromBase.val[i];
  right.imagesFound = 12;
  right.imagesTotal = 14;
  StitchedRig rig;
  rig.cameras = {left, right};
  return rig;
}

} // namespace velmorn::tool

#endif // VELMORN64_TESTS_TOOLS_STITCHED_SAMPLE_H
