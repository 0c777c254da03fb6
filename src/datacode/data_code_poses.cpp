// Board poses of one camera from its images of a data-code board.
#include "datacode/data_code_poses.h"

#include <vector>

#include <opencv2/calib3d.hpp>
#include <opencv2/imgproc.hpp>

#include "datacode/data_code_corners.h"
#include "foundation/log.h"
#include "foundation/truncation.h"
#include "stitching/image_files.h"

namespace velmorn {
namespace {

// Codes of the corner search that stop a whole run, and what the run then returns.
constexpr int kFatalCodes[] = {-1110, -1303};
constexpr int kFatalStatus = -1110;

bool isFatal(int code) { return code == kFatalCodes[0] || code == kFatalCodes[1]; }

struct Corners {
  std::vector<cv::Point2f> pixels;
  std::vector<cv::Point3f> onBoard;
};

tagOzKImage recordOf(const cv::Mat& grey) {
  tagOzKImage image{};
  image.type = kOzkImageOneChannel;
  image.dataType = kOzkSample8U;
  image.width = static_cast<std::uint32_t>(grey.cols);
  image.height = static_cast<std::uint32_t>(grey.rows);
  image.roiX1 = grey.cols - 1;
  image.roiY1 = grey.rows - 1;
  image.data = grey.data;
  return image;
}

void reportCornerSearch(const std::string& path) {
  writeLog(kLogPath, "findDataCodeChessCornerPtAndWorldPt failed.image path is %s\n", path.c_str());
  printConsole("findDataCodeChessCornerPtAndWorldPt failed..image path is " + path + "\n");
}

// The number is that of the corners found, not the one asked for.
void reportTooFew(std::size_t found, const std::string& path) {
  writeLog(kLogPath, "the number of finded corner is less than %d.image path is %s\n",
           static_cast<int>(found), path.c_str());
  printConsole("the number of finded corner is less than " + std::to_string(found) +
               ".image path is " + path + "\n");
}

void reportPose(const std::string& path) {
  writeLog(kLogPath, "solvePnP failed.image path is %s\n", path.c_str());
  printConsole("solvePnP failed..image path is " + path + "\n");
}

// The half pixel that was taken from every corner is given back for the picture.
cv::Point drawnAt(const cv::Point2f& corner) {
  return {truncatedToInt(static_cast<double>(corner.x) + 0.5),
          truncatedToInt(static_cast<double>(corner.y) + 0.5)};
}

void saveAnnotated(const cv::Mat& grey, const std::vector<cv::Point2f>& corners,
                   const std::string& path) {
  constexpr int kRadius = 2, kThickness = 1, kLineType = 8;
  const cv::Scalar green(0, 255, 0);
  if (grey.empty()) return;
  cv::Mat annotated;
  cv::cvtColor(grey, annotated, cv::COLOR_GRAY2BGR);
  for (const cv::Point2f& corner : corners)
    cv::circle(annotated, drawnAt(corner), kRadius, green, kThickness, kLineType);
  saveCornerImage(path, annotated);
}

bool solvePose(const DataCodeCamera& camera, const Corners& corners, cv::Mat& rotationVector,
               cv::Mat& t) {
  try {
    return cv::solvePnP(corners.onBoard, corners.pixels, camera.matrix, camera.distortion,
                        rotationVector, t);
  } catch (const cv::Exception&) { // fewer than four corners, or all on a line
    return false;
  }
}

cv::Mat poseFrom(const cv::Mat& rotationVector, const cv::Mat& t) {
  cv::Mat R;
  cv::Rodrigues(rotationVector, R);
  cv::Mat camFromBoard = cv::Mat::eye(4, 4, CV_64FC1);
  R.copyTo(camFromBoard(cv::Rect(0, 0, 3, 3)));
  t.copyTo(camFromBoard(cv::Rect(3, 0, 1, 3)));
  return camFromBoard;
}

} // namespace

ShotPose findShotPose(const DataCodeCamera& camera, const DataCodeShot& shot, int minCornerNum) {
  const cv::Mat grey = readGrey(shot.path);
  const tagOzKImage image = recordOf(grey);
  Corners corners;
  const int status = findDataCodeChessCornerPtAndWorldPt(&image, corners.pixels, corners.onBoard);
  if (isFatal(status)) return {kFatalStatus, {}};
  if (status != kOzkSuccess) {
    reportCornerSearch(shot.path);
    return {};
  }
  if (!shot.cornerImagePath.empty()) saveAnnotated(grey, corners.pixels, shot.cornerImagePath);
  if (corners.pixels.size() < static_cast<std::size_t>(minCornerNum)) {
    reportTooFew(corners.pixels.size(), shot.path);
    return {};
  }
  cv::Mat rotationVector, t;
  if (!solvePose(camera, corners, rotationVector, t)) {
    reportPose(shot.path);
    return {};
  }
  return {0, poseFrom(rotationVector, t)};
}

} // namespace velmorn
