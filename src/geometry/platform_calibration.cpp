// One camera's extrinsic to a platform, from one image of a chessboard lying on it.
#include <climits>
#include <vector>

#include <opencv2/calib3d.hpp>
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

#include "foundation/boundary.h"
#include "foundation/log.h"
#include "geometry/board_corners.h"
#include "geometry/board_points.h"
#include "geometry/extrinsic_rows.h"

namespace velmorn {
namespace {

constexpr double kPi = 3.141592653589793;

// A rigid transform targetFromSource.
struct Pose {
  cv::Matx33d R;
  cv::Vec3d t; // length unit of the board's squares
};

struct Lens {
  cv::Mat matrix;     // 3x3
  cv::Mat distortion; // 1x12
};

int checkImage(const tagOzKImage& image) {
  if (image.type != kOzkImageOneChannel && image.type != kOzkImageThreeChannels &&
      image.type != kOzkImageThreeChannelsSwapped)
    return kOzkBadSize;
  if (image.width == 0 || image.height == 0 || image.width > INT_MAX || image.height > INT_MAX)
    return kOzkBadSize;
  return image.data == nullptr ? kOzkNullPointer : kOzkSuccess;
}

// A copy of the pixels. The two colour types come out in the same channel order, that of 514; the
// averaging functions' is the other one.
cv::Mat copyPixels(const tagOzKImage& image) {
  const int format = image.type == kOzkImageOneChannel ? CV_8UC1 : CV_8UC3;
  cv::Mat pixels =
      cv::Mat(static_cast<int>(image.height), static_cast<int>(image.width), format, image.data)
          .clone();
  if (image.type == kOzkImageThreeChannels) cv::cvtColor(pixels, pixels, cv::COLOR_BGR2RGB);
  return pixels;
}

// What the detector itself makes of a colour image, for the steps that need one channel.
cv::Mat greyOf(const cv::Mat& pixels) {
  if (pixels.channels() == 1) return pixels;
  cv::Mat grey;
  cv::cvtColor(pixels, grey, cv::COLOR_BGR2GRAY);
  return grey;
}

// The picture with its corners marked is dropped at once; it is there for whoever steps through.
void drawCorners(const cv::Mat& grey, const cv::Size& pattern,
                 const std::vector<cv::Point2f>& corners, bool found) {
  cv::Mat annotated;
  cv::cvtColor(grey, annotated, cv::COLOR_GRAY2BGR);
  cv::drawChessboardCorners(annotated, pattern, corners, found);
}

bool findCorners(const cv::Mat& pixels, tagOzKSize boardSize, std::vector<cv::Point2f>& corners) {
  const bool found = detectBoardCorners(pixels, boardSize, corners);
  if (!found) {
    printConsole("find corners failed\n");
    return false;
  }
  const cv::Mat grey = greyOf(pixels);
  refineBoardCorners(grey, corners);
  drawCorners(grey, cv::Size(boardSize.width, boardSize.height), corners, found);
  printConsole("find corners success\n");
  return true;
}

bool solveBoardPose(const std::vector<cv::Point3f>& board, const std::vector<cv::Point2f>& corners,
                    const Lens& lens, Pose& camFromBoard) {
  cv::Mat rotationVector, t;
  if (!cv::solvePnP(board, corners, lens.matrix, lens.distortion, rotationVector, t, false,
                    cv::SOLVEPNP_ITERATIVE)) {
    printConsole("solvePnP error\n");
    return false;
  }
  cv::Rodrigues(rotationVector, camFromBoard.R);
  camFromBoard.t = {t.at<double>(0), t.at<double>(1), t.at<double>(2)};
  return true;
}

Pose inverseOf(const Pose& camFromBoard) {
  const cv::Matx33d boardFromCamR = camFromBoard.R.t();
  return {boardFromCamR, -boardFromCamR * camFromBoard.t};
}

// Half a turn about the board's x axis: its z axis then points to the other side.
Pose turnedOver(const Pose& boardFromCam) {
  cv::Matx33d turnedFromBoard;
  cv::Rodrigues(cv::Vec3d(kPi, 0, 0), turnedFromBoard);
  return {turnedFromBoard * boardFromCam.R, turnedFromBoard * boardFromCam.t};
}

tagOzKCamExtrinsic extrinsicOf(const Pose& pose) {
  tagOzKCamExtrinsic extrinsic = extrinsicWithoutRows();
  for (int r = 0; r < 3; ++r)
    setRow(extrinsic, r, {pose.R(r, 0), pose.R(r, 1), pose.R(r, 2)}, pose.t[r]);
  return extrinsic;
}

int calibratePlatform(const tagOzKImage* image, const Lens& lens, tagOzKSize boardSize,
                      float squareSize, const cv::Vec3f& offset, bool keepBoardAxes,
                      tagOzKCamExtrinsic* extrinsic) {
  if (image == nullptr || extrinsic == nullptr) return kOzkNullPointer;
  const int status = checkImage(*image);
  if (status != kOzkSuccess) return status;

  std::vector<cv::Point2f> corners;
  if (!findCorners(copyPixels(*image), boardSize, corners)) return kOzkComputationFailed;
  Pose camFromBoard;
  if (!solveBoardPose(boardPoints(boardSize, squareSize), corners, lens, camFromBoard))
    return kOzkComputationFailed;

  const Pose boardFromCam = inverseOf(camFromBoard);
  Pose platformFromCam = keepBoardAxes ? boardFromCam : turnedOver(boardFromCam);
  platformFromCam.t += cv::Vec3d(offset);
  *extrinsic = extrinsicOf(platformFromCam);
  return kOzkSuccess;
}

} // namespace
} // namespace velmorn

int ozkCalirateCamAndPlatform(tagOzKImage* image, tagOzKCamIntrinsic intrinsic,
                              tagOzKCamDistortion distortion, tagOzKSize boardSize,
                              float squareSize, tagOzKCamExtrinsic* extrinsic, float offsetX,
                              float offsetY, float offsetZ, bool keepBoardAxes) {
  return velmorn::guarded([&] {
    const velmorn::Lens lens{cv::Mat(3, 3, CV_64FC1, intrinsic.matrix),
                             cv::Mat(1, 12, CV_64FC1, distortion.coeffs)};
    return velmorn::calibratePlatform(image, lens, boardSize, squareSize,
                                      {offsetX, offsetY, offsetZ}, keepBoardAxes, extrinsic);
  });
}
