// Calibration of one camera from images of the board.
#include "velmorn/calibration.h"

#include <algorithm>
#include <cmath>

#include <opencv2/calib3d.hpp>

#include "geometry/board_corners.h"
#include "velmorn/board.h"
#include "velmorn/grey_image.h"
#include "velmorn/tool_error.h"

namespace velmorn::tool {
namespace {

// The library's own search, so that a camera file and a stitching run see the same corners.
bool findCorners(const cv::Mat& grey, tagOzKSize board, std::vector<cv::Point2f>& corners) {
  if (!detectBoardCorners(grey, board, corners)) return false;
  refineBoardCorners(grey, corners);
  return true;
}

// The size that most images have, the first one's of several: a pattern such as left*.jpg easily
// takes in a picture that is none of the camera's.
cv::Size commonSize(const std::vector<std::string>& paths) {
  std::vector<cv::Size> sizes;
  for (const std::string& path : paths) sizes.push_back(readGrey(path).size());
  cv::Size common;
  std::ptrdiff_t most = 0;
  for (const cv::Size& size : sizes) {
    const std::ptrdiff_t count = std::count(sizes.begin(), sizes.end(), size);
    if (size.area() == 0 || count <= most) continue;
    common = size;
    most = count;
  }
  return common;
}

// Why the image is not usable; empty, and the corners filled, when it is.
std::string problemOf(const cv::Mat& grey, tagOzKSize board, const cv::Size& imageSize,
                      std::vector<cv::Point2f>& corners) {
  if (grey.empty()) return "not readable as an image";
  if (grey.size() != imageSize) {
    return sizeText(grey.size()) + ", but the camera's images are " + sizeText(imageSize);
  }
  return findCorners(grey, board, corners) ? "" : "no board found";
}

BoardView viewOf(const std::string& path, tagOzKSize board, const cv::Size& imageSize) {
  BoardView view;
  view.path = path;
  try {
    view.problem = problemOf(readGrey(path), board, imageSize, view.corners);
  } catch (const cv::Exception& error) {
    view.problem = "refused by OpenCV: " + error.err;
  }
  if (!view.problem.empty()) view.corners.clear();
  return view;
}

// Throws unless the calibration describes a camera.
void requireCamera(const Calibration& found) {
  const bool finite = cv::checkRange(found.cameraMatrix) && cv::checkRange(found.distortion) &&
                      std::isfinite(found.reprojectionRms);
  if (!finite || found.cameraMatrix.at<double>(0, 0) <= 0 ||
      found.cameraMatrix.at<double>(1, 1) <= 0) {
    throw ToolError(
        "the calibration gave no usable camera; more images with the board at other "
        "angles are needed");
  }
}

} // namespace

BoardViews findBoardViews(const std::vector<std::string>& paths, tagOzKSize board,
                          const std::function<void(const BoardView&)>& report) {
  BoardViews found;
  found.imageSize = commonSize(paths);
  for (const std::string& path : paths) {
    found.views.push_back(viewOf(path, board, found.imageSize));
    report(found.views.back());
  }
  return found;
}

Calibration calibrate(const BoardViews& views, tagOzKSize board, float square) {
  if (usableCount(views) < kMinCalibrationViews) {
    throw ToolError(counted(usableCount(views), "usable image") + " of " +
                    std::to_string(views.views.size()) + ", at least " +
                    std::to_string(kMinCalibrationViews) + " are needed");
  }
  std::vector<std::vector<cv::Point2f>> corners;
  for (const BoardView& view : views.views) {
    if (view.problem.empty()) corners.push_back(view.corners);
  }
  const std::vector<std::vector<cv::Point3f>> points(corners.size(), boardPoints(board, square));

  Calibration found;
  found.imageSize = views.imageSize;
  std::vector<cv::Mat> rotations;
  std::vector<cv::Mat> translations;
  found.reprojectionRms = cv::calibrateCamera(points, corners, views.imageSize, found.cameraMatrix,
                                              found.distortion, rotations, translations);
  requireCamera(found);
  return found;
}

std::size_t usableCount(const BoardViews& views) {
  return static_cast<std::size_t>(
      std::count_if(views.views.begin(), views.views.end(),
                    [](const BoardView& view) { return view.problem.empty(); }));
}

} // namespace velmorn::tool
