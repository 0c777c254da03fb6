// What a fit is to look at.
#ifndef VELMORN64_PROVIDERS_BRANTIS64_CORNER_TASK_H
#define VELMORN64_PROVIDERS_BRANTIS64_CORNER_TASK_H

#include "brantis64/board_grid.h"

namespace velmorn::brantis {

// How far the pattern around a crossing is known to go on, squares.
struct WindowReach {
  double left = 0.4;
  double right = 0.4;
  double up = 0.4;
  double down = 0.4;
};

struct CornerTask {
  LocalFrame frame;             // where the crossing is thought to be
  bool whiteLowerRight = false; // the pattern's polarity
  double blur = 1;              // pixels (sigma)
  bool fitsBlur = false;        // whether the blur is an unknown too
  double contrast = 200;        // a start, grey levels
  double radius = 7;            // of the window, pixels
  WindowReach reach;
  double columnLineBend = 0; // half the curvature, 1 / pixel, towards the next column
  double rowLineBend = 0;    // the same towards the next row
  double tolerance = 0.05;   // stops when a step is smaller, pixels
};

} // namespace velmorn::brantis

#endif // VELMORN64_PROVIDERS_BRANTIS64_CORNER_TASK_H
