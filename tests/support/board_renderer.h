// Chessboard images with known truth, as a pinhole camera with lens distortion sees them.
#ifndef VELMORN64_TESTS_SUPPORT_BOARD_RENDERER_H
#define VELMORN64_TESTS_SUPPORT_BOARD_RENDERER_H

#include <cstdint>
#include <vector>

#include <opencv2/core.hpp>

#include "velmorn64.h"

namespace velmorn {

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

// A camera: what projects a point to pixels.
struct CameraModel {
  cv::Size imageSize{640, 480};
  cv::Matx33d matrix = cv::Matx33d::eye();                      // pixels
  cv::Vec<double, 12> distortion = cv::Vec<double, 12>::all(0); // OpenCV's order

  tagOzKCamIntrinsic intrinsicRecord() const;
  tagOzKCamDistortion distortionRecord() const;
};

// A camera of the given focal length with its principal point near the image's centre, without
// distortion and with a usual lens's distortion (barrel, some tangential and thin prism part).
CameraModel plainCamera(cv::Size imageSize, double focal);
CameraModel distortedCamera(cv::Size imageSize, double focal);

// The inner corners in the board's frame, row by row.
std::vector<cv::Point3f> boardCorners(const BoardSpec& board);

// Points of the board's frame in pixels.
std::vector<cv::Point2f> projectPoints(const CameraModel& camera, const cv::Matx44d& camFromBoard,
                                       const std::vector<cv::Point3f>& pointsInBoard);

// The inner corners in pixels: the truth of a rendered image.
std::vector<cv::Point2f> projectCorners(const CameraModel& camera, const BoardSpec& board,
                                        const cv::Matx44d& camFromBoard);

// What happens to the picture on its way to the file.
struct ImageEffects {
  double blurSigma = 0;  // pixels
  double noiseSigma = 0; // grey levels
  std::uint64_t seed = 1;
};

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
  cv::Size imageSize_;
  cv::Mat_<cv::Vec2f> rays_; // x/z, y/z of the lines of sight through the pixels' own corners
};

} // namespace velmorn

#endif // VELMORN64_TESTS_SUPPORT_BOARD_RENDERER_H
