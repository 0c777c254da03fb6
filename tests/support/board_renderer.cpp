// Chessboard images with known truth.
#include "support/board_renderer.h"

#include "velmorn/board_picture.h"

namespace velmorn {

std::vector<cv::Point3f> boardCorners(const BoardSpec& board) {
  std::vector<cv::Point3f> corners;
  for (int row = 0; row < board.height; ++row)
    for (int column = 0; column < board.width; ++column)
      corners.emplace_back(static_cast<float>(column * board.square),
                           static_cast<float>(row * board.square), 0.0F);
  return corners;
}

std::vector<cv::Point2f> projectCorners(const CameraModel& camera, const BoardSpec& board,
                                        const cv::Matx44d& camFromBoard) {
  return projectPoints(camera, camFromBoard, boardCorners(board));
}

BoardRenderer::BoardRenderer(const CameraModel& camera)
    : renderer_(pixelCornerRays(camera)),
      background_(camera.imageSize, tool::kRenderedBackground) {}

cv::Mat BoardRenderer::render(const BoardSpec& board, const cv::Matx44d& camFromBoard,
                              const ImageEffects& effects) const {
  const tool::BoardPicture picture(board.width, board.height, board.quietZone);
  return tool::finishImage(renderer_.render(picture, board.square, camFromBoard, background_),
                           effects);
}

cv::Mat BoardRenderer::renderEmpty(const ImageEffects& effects) const {
  return tool::finishImage(background_.clone(), effects);
}

} // namespace velmorn
