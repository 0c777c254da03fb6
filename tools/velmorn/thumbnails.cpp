// The shots as small pictures with the corners drawn.
#include "velmorn/thumbnails.h"

#include <algorithm>
#include <filesystem>

#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include "velmorn/html_text.h"
#include "velmorn/image_file.h"
#include "velmorn/report_figures.h"

namespace velmorn::tool {
namespace {

constexpr int kJpegQuality = 80;
constexpr int kMostHeights = 2;    // of a picture, in widths
constexpr int kFractionBits = 4;   // of the places that are drawn at
constexpr double kDotSize = 0.005; // radius as a part of the width
constexpr double kLeastDot = 1.5;  // pixels
constexpr double kRing = 3.5;      // radius as a multiple of the dots'

const cv::Scalar kDotColour(0, 159, 230); // blue, green, red
const cv::Scalar kEdgeColour(40, 20, 0);

// Also no higher than kMostHeights times the width.
cv::Mat atMostSoWide(const cv::Mat& image, int width) {
  const double scale = std::min(static_cast<double>(width) / image.cols,
                                static_cast<double>(kMostHeights) * width / image.rows);
  if (scale >= 1) return image.clone();
  const cv::Size size(std::max(1, cvRound(image.cols * scale)),
                      std::max(1, cvRound(image.rows * scale)));
  cv::Mat small;
  cv::resize(image, small, size, 0, 0, cv::INTER_AREA);
  return small;
}

bool isInside(const cv::Point2d& place, const cv::Mat& picture) {
  return place.x >= -0.5 && place.y >= -0.5 && place.x <= picture.cols - 0.5 &&
         place.y <= picture.rows - 0.5;
}

int inFractions(double value) { return cvRound(value * (1 << kFractionBits)); }

void drawDot(cv::Mat& picture, const cv::Point2d& place, double radius) {
  const cv::Point centre(inFractions(place.x), inFractions(place.y));
  cv::circle(picture, centre, inFractions(radius + 1), kEdgeColour, cv::FILLED, cv::LINE_AA,
             kFractionBits);
  cv::circle(picture, centre, inFractions(radius), kDotColour, cv::FILLED, cv::LINE_AA,
             kFractionBits);
}

void drawRing(cv::Mat& picture, const cv::Point2d& place, double radius) {
  const cv::Point centre(inFractions(place.x), inFractions(place.y));
  cv::circle(picture, centre, inFractions(radius), kEdgeColour, 3, cv::LINE_AA, kFractionBits);
  cv::circle(picture, centre, inFractions(radius), kDotColour, 1, cv::LINE_AA, kFractionBits);
}

std::string jpegText(const cv::Mat& picture) {
  std::vector<unsigned char> bytes;
  cv::imencode(".jpg", picture, bytes, {cv::IMWRITE_JPEG_QUALITY, kJpegQuality});
  return base64Text({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
}

class Pictures {
 public:
  Pictures(const StitchRecord& record, const PictureLimits& limits)
      : folder_(record.folder), left_(limits) {}

  ShotPicture take(const ShotRecord& shot) {
    std::error_code error;
    const std::string name = shownPath(folder_, shot.image);
    if (!std::filesystem::is_regular_file(shot.image, error)) return failed("missing: " + name);
    if (isFull_) return failed("left out, the report would grow too large: " + name);
    const cv::Mat image = readImage(shot.image, cv::IMREAD_COLOR);
    if (image.empty()) return failed("not readable: " + name);
    return pictureOf(image, shot);
  }

 private:
  static ShotPicture failed(const std::string& problem) { return {"", "", problem}; }

  ShotPicture pictureOf(const cv::Mat& image, const ShotRecord& shot) {
    ShotPicture picture;
    picture.thumbnail = jpegText(pictureWithCorners(image, shot.corners, kThumbnailWidth));
    if (picture.thumbnail.size() > left_.thumbnailBytes) {
      isFull_ = true;
      return take(shot);
    }
    left_.thumbnailBytes -= picture.thumbnail.size();
    if (image.cols <= kThumbnailWidth) return picture;
    std::string large = jpegText(pictureWithCorners(image, shot.corners, kLargeWidth));
    if (large.size() > left_.largeBytes) return picture;
    left_.largeBytes -= large.size();
    picture.large = std::move(large);
    return picture;
  }

  std::string folder_;
  PictureLimits left_;
  bool isFull_ = false;
};

std::size_t mostShots(const StitchRecord& record) {
  std::size_t most = 0;
  for (const CameraRecord& camera : record.cameras) most = std::max(most, camera.shots.size());
  return most;
}

} // namespace

cv::Mat pictureWithCorners(const cv::Mat& image, const std::vector<cv::Point2d>& corners,
                           int width) {
  cv::Mat picture = atMostSoWide(image, width);
  const double scaleX = static_cast<double>(picture.cols) / image.cols;
  const double scaleY = static_cast<double>(picture.rows) / image.rows;
  const double radius = std::max(kLeastDot, kDotSize * picture.cols);
  for (std::size_t i = 0; i < corners.size(); ++i) {
    const cv::Point2d place((corners[i].x + 0.5) * scaleX - 0.5,
                            (corners[i].y + 0.5) * scaleY - 0.5);
    if (!isInside(place, picture)) continue;
    drawDot(picture, place, radius);
    if (i == 0) drawRing(picture, place, kRing * radius);
  }
  return picture;
}

std::vector<std::vector<ShotPicture>> shotPictures(
    const StitchRecord& record, const PictureLimits& limits,
    const std::function<void(const CameraRecord&, const ShotRecord&, const ShotPicture&)>& report) {
  std::vector<std::vector<ShotPicture>> pictures(record.cameras.size());
  Pictures source(record, limits);
  const std::size_t most = mostShots(record);
  for (std::size_t shot = 0; shot < most; ++shot) {
    for (std::size_t i = 0; i < record.cameras.size(); ++i) {
      const CameraRecord& camera = record.cameras[i];
      if (shot >= camera.shots.size()) continue;
      pictures[i].push_back(source.take(camera.shots[shot]));
      report(camera, camera.shots[shot], pictures[i].back());
    }
  }
  return pictures;
}

} // namespace velmorn::tool
