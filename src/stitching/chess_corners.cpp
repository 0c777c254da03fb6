// Chessboard corner extraction from image files.
#include "stitching/chess_corners.h"

#include <cstdio>

#include <opencv2/calib3d.hpp>
#include <opencv2/imgproc.hpp>

#include "foundation/log.h"
#include "geometry/board_corners.h"
#include "stitching/image_files.h"

namespace velmorn {
namespace {

constexpr const char* kCornerImageFormat = "chessImgs/corner-%d%d%d-%s.bmp";

enum class ImageOutcome { kUnreadable, kWrongSize, kNotFound, kFound };

// What one image file gave. Kept while the same file is still to come in the camera's list.
struct ImageResult {
  ImageOutcome outcome = ImageOutcome::kUnreadable;
  std::vector<cv::Point2f> corners; // pixels
  cv::Mat annotated;                // the image with its corners drawn; only when it is to be saved
};

struct CameraSearch {
  tagOzKSize patternSize;
  bool saveCornerImages;
  cv::Size referenceSize; // of the camera's first readable image
};

// A board in an image too small for the refinement counts as not found, like one that is not there.
bool findCorners(const cv::Mat& grey, tagOzKSize patternSize, std::vector<cv::Point2f>& corners) {
  if (!detectBoardCorners(grey, patternSize, corners) || !fitsCornerRefinement(grey.size())) {
    corners.clear();
    return false;
  }
  refineBoardCorners(grey, corners);
  return true;
}

cv::Mat drawCorners(const cv::Mat& grey, tagOzKSize patternSize,
                    const std::vector<cv::Point2f>& corners) {
  cv::Mat annotated;
  cv::cvtColor(grey, annotated, cv::COLOR_GRAY2BGR);
  cv::drawChessboardCorners(annotated, cv::Size(patternSize.width, patternSize.height), corners,
                            true);
  return annotated;
}

ImageResult searchImage(const std::string& path, CameraSearch& search) {
  ImageResult result;
  const cv::Mat grey = readGrey(path);
  if (grey.empty()) return result;

  if (search.referenceSize.area() == 0) search.referenceSize = grey.size();
  if (grey.size() != search.referenceSize) {
    result.outcome = ImageOutcome::kWrongSize;
    return result;
  }
  if (!findCorners(grey, search.patternSize, result.corners)) {
    result.outcome = ImageOutcome::kNotFound;
    return result;
  }
  result.outcome = ImageOutcome::kFound;
  if (search.saveCornerImages)
    result.annotated = drawCorners(grey, search.patternSize, result.corners);
  return result;
}

// "chessImgs/corner-007-ID.bmp": hundreds, tens and units of the index, each as a number of its
// own, so that an index from 1000 on only makes the name longer.
std::string cornerImageName(int index, const std::string& camID) {
  const int hundreds = index / 100, tens = index % 100 / 10, units = index % 10;
  const char* id = camID.c_str();
  const int length = std::snprintf(nullptr, 0, kCornerImageFormat, hundreds, tens, units, id);
  std::vector<char> name(static_cast<std::size_t>(length) + 1);
  std::snprintf(name.data(), name.size(), kCornerImageFormat, hundreds, tens, units, id);
  return name.data();
}

// Messages and corner image of one entry of the list.
void reportImage(const ImageResult& result, const std::string& path, int index,
                 const std::string& camID) {
  switch (result.outcome) {
    case ImageOutcome::kUnreadable:
      printConsole("load " + path + " failed\n");
      writeLog(kLogPath, "load %s failed\n", path.c_str());
      break;
    case ImageOutcome::kWrongSize:
      printConsole("image size is error\n");
      writeLog(kLogPath, "image size is error\n");
      break;
    case ImageOutcome::kNotFound:
      printConsole("failed\n");
      break;
    case ImageOutcome::kFound:
      if (!result.annotated.empty())
        saveCornerImage(cornerImageName(index, camID), result.annotated);
      printConsole("success\n");
      break;
  }
}

// How often each path is still to come.
std::map<std::string, int> countPaths(const std::vector<std::string>& paths) {
  std::map<std::string, int> counts;
  for (const std::string& path : paths) ++counts[path];
  return counts;
}

// A path that the camera lists again is not read again; everything comes out as if it were.
std::vector<std::vector<cv::Point2f>> findCameraCorners(const std::string& camID,
                                                        const std::vector<std::string>& paths,
                                                        CameraSearch search) {
  std::vector<std::vector<cv::Point2f>> corners(paths.size());
  std::map<std::string, int> toCome = countPaths(paths);
  std::map<std::string, ImageResult> seen;
  for (std::size_t j = 0; j < paths.size(); ++j) {
    const std::string& path = paths[j];
    printConsole("find corner: " + path + "\n");
    auto known = seen.find(path);
    if (known == seen.end()) known = seen.emplace(path, searchImage(path, search)).first;

    reportImage(known->second, path, static_cast<int>(j), camID);
    corners[j] = known->second.corners;
    if (--toCome[path] == 0) seen.erase(known);
  }
  return corners;
}

} // namespace

void findChessCornerPtByImgs(const ImagePathMap& chessImgPaths, CornerMap& corners,
                             tagOzKSize patternSize, bool saveCornerImages) {
  corners.clear();
  for (const auto& [camID, paths] : chessImgPaths) {
    const CameraSearch search{patternSize, saveCornerImages, cv::Size()};
    corners[camID] = findCameraCorners(camID, paths, search);
  }
}

} // namespace velmorn
