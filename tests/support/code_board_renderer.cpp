// Images of data-code boards with known truth.
#include "support/code_board_renderer.h"

#include <cmath>

#include "velmorn/code_board_picture.h"

namespace velmorn {
namespace {

// Before the camera, and not so far off its axis that the lens's polynomial folds it back.
bool facesCamera(const cv::Matx44d& camFromBoard, const cv::Point2f& onBoard) {
  constexpr double kLargestTangent = 0.9;
  const cv::Vec4d p = camFromBoard * cv::Vec4d(static_cast<double>(onBoard.x),
                                               static_cast<double>(onBoard.y), 0, 1);
  return p[2] > 0 && std::hypot(p[0], p[1]) < kLargestTangent * p[2];
}

} // namespace

std::vector<CodeBoardCorner> visibleCodeBoardCorners(const CameraModel& camera,
                                                     const tool::CodeBoardSpec& board,
                                                     const cv::Matx44d& camFromBoard,
                                                     double margin) {
  std::vector<CodeBoardCorner> corners;
  for (int row = 0; row <= board.rows; ++row)
    for (int column = 0; column <= board.columns; ++column) {
      CodeBoardCorner corner;
      corner.column = column;
      corner.row = row;
      corner.onBoard = cv::Point2f(static_cast<float>(column * board.square),
                                   static_cast<float>(row * board.square));
      if (!facesCamera(camFromBoard, corner.onBoard)) continue;
      corner.pixel =
          projectPoints(camera, camFromBoard, {{corner.onBoard.x, corner.onBoard.y, 0.0F}}).front();
      const double x = static_cast<double>(corner.pixel.x), y = static_cast<double>(corner.pixel.y);
      if (x >= margin && y >= margin && x <= camera.imageSize.width - 1 - margin &&
          y <= camera.imageSize.height - 1 - margin)
        corners.push_back(corner);
    }
  return corners;
}

CodeBoardRenderer::CodeBoardRenderer(const CameraModel& camera)
    : renderer_(pixelCornerRays(camera)),
      background_(camera.imageSize, tool::kRenderedBackground) {}

cv::Mat CodeBoardRenderer::render(const tool::CodeBoardSpec& board,
                                  const tool::CodeBoardSymbols& symbols,
                                  const cv::Matx44d& camFromBoard,
                                  const ImageEffects& effects) const {
  return tool::finishImage(renderPlain(board, symbols, camFromBoard), effects);
}

cv::Mat_<float> CodeBoardRenderer::renderPlain(const tool::CodeBoardSpec& board,
                                               const tool::CodeBoardSymbols& symbols,
                                               const cv::Matx44d& camFromBoard) const {
  return renderer_.render(tool::CodeBoardPicture(board, symbols), board.square, camFromBoard,
                          background_);
}

} // namespace velmorn
