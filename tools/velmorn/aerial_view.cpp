// The aerial view of depth cameras, by the library.
#include "velmorn/aerial_view.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

#include "velmorn/library_console.h"
#include "velmorn/library_image.h"
#include "velmorn/tool_error.h"

namespace velmorn::tool {
namespace {

// What the library takes besides the images, in its unit: counts of the depth images.
struct LibraryJob {
  tagOzKRect2Df32 region{};
  float resolution = 0;
  std::vector<tagOzKCamIntrinsic> intrinsics;
  std::vector<tagOzKCamExtrinsic> firstFromCams;
};

tagOzKCamExtrinsic inCounts(const cv::Matx44d& pose, double depthUnit) {
  tagOzKCamExtrinsic record{};
  std::copy_n(pose.val, 16, record.data);
  for (const int translation : {3, 7, 11}) record.data[translation] /= depthUnit;
  return record;
}

LibraryJob inCounts(const AerialJob& job) {
  const cv::Vec4d region = job.region * (1 / job.depthUnit);
  LibraryJob counts;
  counts.region = {static_cast<float>(region[0]), static_cast<float>(region[1]),
                   static_cast<float>(region[2]), static_cast<float>(region[3])};
  counts.resolution = static_cast<float>(job.resolution / job.depthUnit);
  for (const AerialJobCamera& camera : job.cameras) {
    counts.intrinsics.push_back(camera.model.intrinsic);
    counts.firstFromCams.push_back(inCounts(camera.firstFromCam, job.depthUnit));
  }
  return counts;
}

// The library's image of a region, given back at the end of its scope.
class AerialBuffer {
 public:
  explicit AerialBuffer(const LibraryJob& job) {
    const int status = createAerialViewImg(&job.region, job.resolution, &image_);
    if (status != kOzkSuccess) throw ToolError("there is no memory for the aerial image");
  }
  ~AerialBuffer() { releaseAerialViewImg(&image_); }
  AerialBuffer(const AerialBuffer&) = delete;
  AerialBuffer& operator=(const AerialBuffer&) = delete;

  tagOzKImage* record() { return &image_; }

  cv::Mat copy() const {
    return cv::Mat(static_cast<int>(image_.height), static_cast<int>(image_.width), CV_8UC3,
                   image_.data)
        .clone();
  }

 private:
  tagOzKImage image_{};
};

// Without colours, false colours of the depth.
cv::Mat render(const LibraryJob& job, const std::vector<cv::Mat>& depth,
               const std::vector<cv::Mat>& colours) {
  const std::vector<tagOzKImage> depthRecords = libraryImages(depth);
  const std::vector<tagOzKImage> colourRecords = libraryImages(colours);
  AerialBuffer buffer(job);
  int status = 0;
  {
    const LibraryConsole console;
    status = ozkCvtDepthToAerialViewImg(
        depthRecords.data(), colours.empty() ? nullptr : colourRecords.data(),
        job.intrinsics.data(), job.firstFromCams.data(), static_cast<int>(depth.size()),
        &job.region, job.resolution, buffer.record());
  }
  if (status != kOzkSuccess) {
    throw ToolError("the library refused the images with status " + std::to_string(status));
  }
  return buffer.copy();
}

// A colour that spells the depth sample, low byte first, and the number of the camera from 1 on.
cv::Mat spelled(const cv::Mat& depth, std::size_t camera) {
  cv::Mat colour(depth.size(), CV_8UC3);
  std::transform(depth.begin<std::uint16_t>(), depth.end<std::uint16_t>(),
                 colour.begin<cv::Vec3b>(), [&](std::uint16_t sample) {
                   return cv::Vec3b(static_cast<std::uint8_t>(sample & 0xff),
                                    static_cast<std::uint8_t>(sample >> 8),
                                    static_cast<std::uint8_t>(camera + 1));
                 });
  return colour;
}

// Takes the samples and cameras that the cells show out of a view in spelled colours.
void readSpelled(const cv::Mat& colours, AerialView& view) {
  view.depth.create(colours.size(), CV_16UC1);
  std::transform(colours.begin<cv::Vec3b>(), colours.end<cv::Vec3b>(),
                 view.depth.begin<std::uint16_t>(), [&](const cv::Vec3b& colour) {
                   if (colour[2] != 0) ++view.cellsOf[colour[2] - 1U];
                   return static_cast<std::uint16_t>(colour[0] + 256 * colour[1]);
                 });
}

} // namespace

MapGrid aerialGrid(const AerialJob& job) {
  const LibraryJob counts = inCounts(job);
  const tagOzKRect2Df32& region = counts.region;
  const bool isUsable = region.x1 < region.x2 && region.y1 < region.y2 && counts.resolution > 0 &&
                        std::isfinite(region.x2 - region.x1) &&
                        std::isfinite(region.y2 - region.y1);
  if (!isUsable) {
    throw ToolError("\"region\", \"resolution\" or \"depth_unit\" is beyond single precision");
  }
  const cv::Size size = mapGridSize(region, counts.resolution);
  return {job.region[0], job.region[1], job.resolution, size};
}

// The library paints a cell in the colour of the sample that it shows, so a second view, of colours
// that spell depth and camera, says which samples the first one shows.
AerialView renderAerialView(const AerialJob& job, const AerialImages& images) {
  AerialView view;
  view.grid = aerialGrid(job);
  const LibraryJob counts = inCounts(job);
  view.picture = render(counts, images.depth, images.colour);
  std::vector<cv::Mat> spelledDepth;
  for (const cv::Mat& depth : images.depth) {
    spelledDepth.push_back(spelled(depth, spelledDepth.size()));
  }
  readSpelled(render(counts, images.depth, spelledDepth), view);
  return view;
}

} // namespace velmorn::tool
