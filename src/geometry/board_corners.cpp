// Chessboard detection and refinement with the parameters that results are defined by.
#include "geometry/board_corners.h"

#include <opencv2/calib3d.hpp>
#include <opencv2/imgproc.hpp>

namespace velmorn {
namespace {

const cv::Size kRefineHalfWindow(11, 11); // pixels
const cv::Size kNoDeadZone(-1, -1);
constexpr int kRefineIterations = 30;
constexpr double kRefineAccuracy = 0.01; // pixels

} // namespace

bool detectBoardCorners(const cv::Mat& image, tagOzKSize patternSize,
                        std::vector<cv::Point2f>& corners) {
  constexpr int kFlags =
      cv::CALIB_CB_ADAPTIVE_THRESH + cv::CALIB_CB_FILTER_QUADS + cv::CALIB_CB_FAST_CHECK;
  const cv::Size pattern(patternSize.width, patternSize.height);
  return cv::findChessboardCorners(image, pattern, corners, kFlags);
}

bool fitsCornerRefinement(const cv::Size& image) {
  const int least = 2 * kRefineHalfWindow.width + 5; // OpenCV's own border included
  return image.width >= least && image.height >= least;
}

void refineBoardCorners(const cv::Mat& grey, std::vector<cv::Point2f>& corners) {
  const cv::TermCriteria stop(cv::TermCriteria::COUNT + cv::TermCriteria::EPS, kRefineIterations,
                              kRefineAccuracy);
  cv::cornerSubPix(grey, corners, kRefineHalfWindow, kNoDeadZone, stop);
}

} // namespace velmorn
