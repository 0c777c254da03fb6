// A data-code board as a picture on a plane.
#ifndef VELMORN64_TOOLS_CODE_BOARD_PICTURE_H
#define VELMORN64_TOOLS_CODE_BOARD_PICTURE_H

#include "velmorn/code_board.h"
#include "velmorn/plane_renderer.h"

namespace velmorn::tool {

constexpr double kCodeBoardMargin = 1; // white paper around the pattern, squares

// In units of squares, origin at the outer corner of square (1, 1). Board and symbols have to
// outlive the picture.
class CodeBoardPicture : public PlanePicture {
 public:
  CodeBoardPicture(const CodeBoardSpec& board, const CodeBoardSymbols& symbols)
      : board_(board), symbols_(symbols) {}

  int area(const cv::Vec2f& p) const override;
  float shade(int area) const override;

 private:
  bool within(const cv::Vec2f& p, float margin) const;
  int moduleNumber(const cv::Vec2f& p, int a, int b) const;
  int moduleAlong(float inSquare) const;

  const CodeBoardSpec& board_;
  const CodeBoardSymbols& symbols_;
};

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_CODE_BOARD_PICTURE_H
