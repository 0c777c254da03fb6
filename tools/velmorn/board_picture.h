// A plain chessboard as a picture on a plane.
#ifndef VELMORN64_TOOLS_BOARD_PICTURE_H
#define VELMORN64_TOOLS_BOARD_PICTURE_H

#include "velmorn/plane_renderer.h"

namespace velmorn::tool {

// In units of squares, origin at the first inner corner. The square at the origin's upper left is
// black; a white quiet zone goes around the complete squares.
class BoardPicture : public PlanePicture {
 public:
  // columns, rows  inner corners
  // quietZone      squares
  BoardPicture(int columns, int rows, double quietZone);

  int area(const cv::Vec2f& p) const override;
  float shade(int area) const override;

 private:
  bool outside(const cv::Vec2f& p, float margin) const;

  float right_, bottom_, quietZone_;
};

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_BOARD_PICTURE_H
