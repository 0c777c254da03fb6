// Chessboard images with known truth.
#include "support/board_renderer.h"

namespace velmorn {
namespace {

// The board as a picture in units of squares, origin at the first inner corner.
class BoardPicture : public PlanePicture {
 public:
  explicit BoardPicture(const BoardSpec& board)
      : right_(static_cast<float>(board.width)),
        bottom_(static_cast<float>(board.height)),
        quietZone_(static_cast<float>(board.quietZone)) {}

  // The area a point lies in: a number per square, one for the quiet zone, one for the background.
  int area(const cv::Vec2f& p) const override {
    if (outside(p, quietZone_)) return kOutside;
    if (outside(p, 0)) return kQuietZone;
    const int column = static_cast<int>(p[0] + 1), row = static_cast<int>(p[1] + 1);
    return row * 1024 + column;
  }

  float shade(int area) const override {
    if (area == kOutside) return kRenderedBackground;
    if (area == kQuietZone) return kRenderedWhite;
    return (area / 1024 + area % 1024) % 2 == 0 ? kRenderedBlack : kRenderedWhite;
  }

 private:
  static constexpr int kOutside = -2;
  static constexpr int kQuietZone = -1;

  bool outside(const cv::Vec2f& p, float margin) const {
    return !(p[0] >= -1 - margin && p[0] < right_ + margin && p[1] >= -1 - margin &&
             p[1] < bottom_ + margin);
  }

  float right_, bottom_, quietZone_;
};

} // namespace

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

BoardRenderer::BoardRenderer(const CameraModel& camera) : renderer_(camera) {}

cv::Mat BoardRenderer::render(const BoardSpec& board, const cv::Matx44d& camFromBoard,
                              const ImageEffects& effects) const {
  return finishImage(renderer_.render(BoardPicture(board), board.square, camFromBoard), effects);
}

cv::Mat BoardRenderer::renderEmpty(const ImageEffects& effects) const {
  return finishImage(cv::Mat_<float>(renderer_.imageSize(), kRenderedBackground), effects);
}

} // namespace velmorn
