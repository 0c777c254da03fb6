// Relative pose of two cameras: board poses in both, one rigid fit over all shared corners.
#include "stitching/relative_pose.h"

#include <cstdint>

#include <opencv2/calib3d.hpp>

#include "foundation/log.h"
#include "geometry/board_points.h"
#include "geometry/rigid_transform.h"

namespace velmorn {
namespace {

using CornerLists = std::vector<std::vector<cv::Point2f>>;

// The positions at which both cameras have every corner.
std::vector<std::size_t> sharedImages(const CornerLists& a, const CornerLists& b,
                                      tagOzKSize patternSize) {
  const std::int64_t full = std::int64_t{patternSize.width} * patternSize.height;
  std::vector<std::size_t> shared;
  for (std::size_t k = 0; k < a.size(); ++k)
    if (static_cast<std::int64_t>(a[k].size()) == full &&
        static_cast<std::int64_t>(b[k].size()) == full)
      shared.push_back(k);
  return shared;
}

// The matrix of one camera; empty when it has none, which OpenCV then refuses.
cv::Mat matrixOf(const MatrixMap& matrices, const std::string& camID) {
  const auto found = matrices.find(camID);
  return found == matrices.end() ? cv::Mat() : found->second;
}

// Appends the board's corners in the camera's frame, p = R p_board + t from the board's pose.
bool appendBoardInCamera(const std::vector<cv::Point3f>& board,
                         const std::vector<cv::Point2f>& corners, const cv::Mat& intrinsic,
                         const cv::Mat& distortion, std::vector<tagOzKPoint3Df32>& points) {
  cv::Mat rotationVector, t;
  if (!cv::solvePnP(board, corners, intrinsic, distortion, rotationVector, t)) {
    printConsole("solvePnP error\n");
    writeLog(kLogPath, "solvePnP errorr\n"); // the log's text is its own
    return false;
  }
  cv::Matx33d R;
  cv::Rodrigues(rotationVector, R);
  const cv::Vec3d translation(t.at<double>(0), t.at<double>(1), t.at<double>(2));
  for (const cv::Point3f& point : board) {
    const cv::Vec3d p = R * cv::Vec3d(point.x, point.y, point.z) + translation;
    points.push_back(
        {static_cast<float>(p[0]), static_cast<float>(p[1]), static_cast<float>(p[2])});
  }
  return true;
}

} // namespace

int calCameraRT(const std::string& camA, const std::string& camB, const CornerMap& corners,
                const MatrixMap& intrinsics, const MatrixMap& distortions, tagOzKSize patternSize,
                float squareSize, int minImages, cv::Mat& R, cv::Mat& T, float& residual) {
  const auto entryA = corners.find(camA), entryB = corners.find(camB);
  if (entryA == corners.end() || entryB == corners.end()) {
    printConsole("calCameraRT func: camera ID is error\n");
    writeLog(kLogPath, "calCameraRT func: camera ID is error\n");
    return kOzkComputationFailed;
  }
  const CornerLists &cornersA = entryA->second, &cornersB = entryB->second;
  if (cornersA.size() != cornersB.size()) {
    printConsole("calCameraRT func: the number of corner is error\n"); // console only
    return kOzkComputationFailed;
  }
  const std::vector<std::size_t> shared = sharedImages(cornersA, cornersB, patternSize);
  if (static_cast<int>(shared.size()) < minImages) return kOzkComputationFailed;

  const std::vector<cv::Point3f> board = boardPoints(patternSize, squareSize);
  const cv::Mat intrinsicA = matrixOf(intrinsics, camA), intrinsicB = matrixOf(intrinsics, camB);
  const cv::Mat distortionA = matrixOf(distortions, camA);
  const cv::Mat distortionB = matrixOf(distortions, camB);
  std::vector<tagOzKPoint3Df32> inA, inB;
  for (const std::size_t k : shared)
    if (!appendBoardInCamera(board, cornersA[k], intrinsicA, distortionA, inA) ||
        !appendBoardInCamera(board, cornersB[k], intrinsicB, distortionB, inB))
      return kOzkComputationFailed;

  // camAFromCamB: the first set is carried onto the second.
  const int count = static_cast<int>(inA.size());
  if (calRTMatFrom3dPtTo3dPt(inB.data(), inA.data(), count, R, T, &residual) != kOzkSuccess) {
    printConsole("calRTMatFrom3dPtTo3dPt failed\n");
    writeLog(kLogPath, "calRTMatFrom3dPtTo3dPt failed\n");
    return kOzkComputationFailed;
  }
  return kOzkSuccess;
}

} // namespace velmorn
