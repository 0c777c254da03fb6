// The shots as small pictures with the corners drawn.
#ifndef VELMORN64_TOOLS_THUMBNAILS_H
#define VELMORN64_TOOLS_THUMBNAILS_H

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "velmorn/stitch_record.h"

namespace velmorn::tool {

// Of a picture, pixels; smaller images keep their size.
constexpr int kThumbnailWidth = 320;
constexpr int kLargeWidth = 960;

// Of all pictures of a report, bytes in base 64. Within them every shot has its thumbnail.
constexpr std::size_t kThumbnailBytes = 12'000'000;
constexpr std::size_t kLargeBytes = 20'000'000;

// JPEG files in base 64.
struct ShotPicture {
  std::string thumbnail; // empty when there is a problem
  std::string large;     // empty when it would not be larger, or when there is no room for it
  std::string problem;   // why there is no picture, for the reader; names the file
};

struct PictureLimits {
  std::size_t thumbnailBytes = kThumbnailBytes;
  std::size_t largeBytes = kLargeBytes;
};

// The pictures by camera and shot. All cameras' first shots are taken in before the second ones, so
// that the limits meet them alike; once there is no room, images are not even read. `report` is
// called for every shot.
std::vector<std::vector<ShotPicture>> shotPictures(
    const StitchRecord& record, const PictureLimits& limits,
    const std::function<void(const CameraRecord&, const ShotRecord&, const ShotPicture&)>& report);

// The image at most so wide and twice as high, with a dot at every corner that lies within it and a
// ring around the first one. Corners are in pixels of the image as it comes.
cv::Mat pictureWithCorners(const cv::Mat& image, const std::vector<cv::Point2d>& corners,
                           int width);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_THUMBNAILS_H
