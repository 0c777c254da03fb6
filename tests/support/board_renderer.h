// Chessboard images with known truth, as a pinhole camera with lens distortion sees them.
#ifndef VELMORN64_TESTS_SUPPORT_BOARD_RENDERER_H
#define VELMORN64_TESTS_SUPPORT_BOARD_RENDERER_H

#include <vector>

#include <opencv2/core.hpp>

#include "support/camera_model.h"
#include "velmorn/plane_renderer.h"
#include "velmorn64.h"

namespace velmorn {

using tool::ImageEffects;

// A board. Its frame: origin at the first inner corner, x along the rows, y along the columns, z
// away from a camera that looks at its printed side upright. The (width + 1) x (height + 1) squares
// are complete, with a white quiet zone around them; the square at the origin's upper left is
// black.
struct BoardSpec {
  int width = 9;          // inner corners per row
  int height = 6;         // inner corners per column
  double square = 25;     // side of a square, length unit
  double quietZone = 0.7; // width of the white margin, squares

  tagOzKSize patternSize() const { return {width, height}; }
};

// The inner corners in the board's frame, row by row.
std::vector<cv::Point3f> boardCorners(const BoardSpec& board);

// The inner corners in pixels: the truth of a rendered image.
std::vector<cv::Point2f> projectCorners(const CameraModel& camera, const BoardSpec& board,
                                        const cv::Matx44d& camFromBoard);

// Renders images of one camera. What depends on the lens only is computed once per renderer, so
// keep one per camera.
class BoardRenderer {
 public:
  explicit BoardRenderer(const CameraModel& camera);

  // 8-bit grey, the board before a mid-grey background.
  cv::Mat render(const BoardSpec& board, const cv::Matx44d& camFromBoard,
                 const ImageEffects& effects = {}) const;

  // The background alone.
  cv::Mat renderEmpty(const ImageEffects& effects = {}) const;

 private:
  tool::PlaneRenderer renderer_;
  cv::Mat_<float> background_;
};

} // namespace velmorn

#endif // VELMORN64_TESTS_SUPPORT_BOARD_RENDERER_H
