// Images of data-code boards with known truth.
#ifndef VELMORN64_TESTS_SUPPORT_CODE_BOARD_RENDERER_H
#define VELMORN64_TESTS_SUPPORT_CODE_BOARD_RENDERER_H

#include <vector>

#include <opencv2/core.hpp>

#include "support/camera_model.h"
#include "velmorn/code_board.h"
#include "velmorn/plane_renderer.h"

namespace velmorn {

using tool::ImageEffects;

// A corner of a coded square.
struct CodeBoardCorner {
  int column = 0; // grid lines from the board's origin
  int row = 0;
  cv::Point2f onBoard; // board frame, length unit
  cv::Point2f pixel;   // (0, 0) is the centre of the first pixel
};

// All corners whose pixel lies inside the image by at least `margin` pixels and whose surroundings
// face the camera.
std::vector<CodeBoardCorner> visibleCodeBoardCorners(const CameraModel& camera,
                                                     const tool::CodeBoardSpec& board,
                                                     const cv::Matx44d& camFromBoard,
                                                     double margin);

// Renders images of one camera; keep one per camera.
class CodeBoardRenderer {
 public:
  explicit CodeBoardRenderer(const CameraModel& camera);

  // 8-bit grey, the board with a white margin of one square before a mid-grey background.
  cv::Mat render(const tool::CodeBoardSpec& board, const tool::CodeBoardSymbols& symbols,
                 const cv::Matx44d& camFromBoard, const ImageEffects& effects = {}) const;

  // The same as grey levels before any effect.
  cv::Mat_<float> renderPlain(const tool::CodeBoardSpec& board,
                              const tool::CodeBoardSymbols& symbols,
                              const cv::Matx44d& camFromBoard) const;

 private:
  tool::PlaneRenderer renderer_;
  cv::Mat_<float> background_;
};

} // namespace velmorn

#endif // VELMORN64_TESTS_SUPPORT_CODE_BOARD_RENDERER_H
