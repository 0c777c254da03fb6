// What a result file says.
#ifndef VELMORN64_TOOLS_STITCH_RECORD_H
#define VELMORN64_TOOLS_STITCH_RECORD_H

#include <optional>
#include <string>
#include <vector>

#include <opencv2/core.hpp>

namespace velmorn::tool {

struct IntrinsicsRecord {
  std::string file;
  cv::Size imageSize;
  cv::Matx33d matrix;
  std::vector<double> distortion;
};

struct ShotRecord {
  std::string image;
  std::string outcome;
  std::string detail;
  double reprojectionError = 0;
  cv::Matx44d camFromBoard;
  std::vector<cv::Point2d> corners;
  std::vector<cv::Point> grid;

  bool found() const { return outcome == "found"; }
};

struct CameraRecord {
  std::string id;
  std::string parent;
  bool isBase = false;
  int depth = 0;
  std::optional<cv::Matx44d> baseFromCam;
  std::optional<double> residual;
  std::size_t imagesFound = 0;
  std::size_t imagesTotal = 0;
  std::size_t imagesShared = 0;
  std::optional<IntrinsicsRecord> intrinsics;
  cv::Size imageSize;
  std::vector<ShotRecord> shots;
};

struct StitchRecord {
  bool hasDataCodes = false;
  cv::Size board;
  double square = 0;
  int minImages = 0;
  std::string base;
  std::string error;
  std::vector<CameraRecord> cameras;
  std::string folder;
};

StitchRecord readStitchRecord(const std::string& path);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_STITCH_RECORD_H
