// The exported functions of the aerial view: checks, messages, records as matrices.
#include <limits>
#include <optional>
#include <vector>

#include <opencv2/imgproc.hpp>

#include "depth/aerial_projection.h"
#include "depth/grid_size.h"
#include "foundation/boundary.h"
#include "foundation/log.h"

namespace velmorn {
namespace {

int refuse(int status, const char* message) {
  writeLog(kLogPath, "%s", message);
  return status;
}

bool hasPixels(const tagOzKImage& image) { return image.width > 0 && image.height > 0; }

// What is left to check of an image of an accepted type.
int checkPixels(const tagOzKImage& image) {
  constexpr std::uint32_t kLargest = std::numeric_limits<int>::max();
  if (image.width > kLargest || image.height > kLargest) return kOzkBadSize;
  return image.data == nullptr && hasPixels(image) ? kOzkNullPointer : kOzkSuccess;
}

int checkDepthImage(const tagOzKImage& depth) {
  if (depth.dataType != kOzkSample16U)
    return refuse(kOzkBadDataType, "depth image dataType error\n");
  if (depth.type != kOzkImageOneChannel)
    return refuse(kOzkBadImageType, "depth image type error\n");
  return checkPixels(depth);
}

int checkColorImage(const tagOzKImage& color, const tagOzKImage& depth) {
  if (color.width != depth.width || color.height != depth.height)
    return refuse(kOzkBadSize, "depth image size is diffrent with color image\n");
  if (color.dataType != kOzkSample8U)
    return refuse(kOzkBadDataType, "color image dataType error\n");
  if (color.type != kOzkImageThreeChannels && color.type != kOzkImageThreeChannelsSwapped)
    return refuse(kOzkBadImageType, "color image type error\n");
  return checkPixels(color);
}

int checkImages(const tagOzKImage* depthImages, const tagOzKImage* colorImages, int cameraCount) {
  for (int k = 0; k < cameraCount; ++k) {
    const int status = checkDepthImage(depthImages[k]);
    if (status != kOzkSuccess) return status;
  }
  if (colorImages == nullptr) return kOzkSuccess;
  for (int k = 0; k < cameraCount; ++k) {
    const int status = checkColorImage(colorImages[k], depthImages[k]);
    if (status != kOzkSuccess) return status;
  }
  return kOzkSuccess;
}

int checkAerialImage(const tagOzKImage& aerialImage, const GridSize& grid) {
  if (aerialImage.width != static_cast<std::uint32_t>(grid.width) ||
      aerialImage.height != static_cast<std::uint32_t>(grid.height))
    return refuse(kOzkBadSize, "input aerialViewImg size error\n");
  return aerialImage.data == nullptr && hasPixels(aerialImage) ? kOzkNullPointer : kOzkSuccess;
}

// The record's buffer as a matrix, nothing copied.
cv::Mat matrixOf(const tagOzKImage& image, int type) {
  return cv::Mat(static_cast<int>(image.height), static_cast<int>(image.width), type, image.data);
}

cv::Mat colorMatrixOf(const tagOzKImage& color) {
  const cv::Mat pixels = matrixOf(color, CV_8UC3);
  if (color.type == kOzkImageThreeChannels || pixels.empty()) return pixels;
  cv::Mat swapped;
  cv::cvtColor(pixels, swapped, cv::COLOR_BGR2RGB);
  return swapped;
}

int convertRecords(const tagOzKImage* depthImages, const tagOzKImage* colorImages,
                   const tagOzKCamIntrinsic* intrinsics, const tagOzKCamExtrinsic* extrinsics,
                   int cameraCount, const tagOzKRect2Df32* region, float resolution,
                   tagOzKImage* aerialImage) {
  int status = checkAerialArguments(depthImages, intrinsics, extrinsics, cameraCount, region,
                                    resolution, aerialImage);
  if (status == kOzkSuccess) status = checkImages(depthImages, colorImages, cameraCount);
  if (status != kOzkSuccess) return status;
  const std::optional<GridSize> grid = aerialGridSize(*region, resolution);
  if (!grid) return kOzkBadSize;
  status = checkAerialImage(*aerialImage, *grid);
  if (status != kOzkSuccess) return status;

  std::vector<cv::Mat> depths, colors;
  for (int k = 0; k < cameraCount; ++k) {
    depths.push_back(matrixOf(depthImages[k], CV_16UC1));
    if (colorImages != nullptr) colors.push_back(colorMatrixOf(colorImages[k]));
  }
  cv::Mat image = matrixOf(*aerialImage, CV_8UC3); // of the grid's size: written in place
  if (colorImages == nullptr)
    return projectDepthToAerial(depths.data(), intrinsics, extrinsics, cameraCount, region,
                                resolution, &image);
  return projectDepthToAerialWithColor(depths.data(), colors.data(), intrinsics, extrinsics,
                                       cameraCount, region, resolution, &image);
}

} // namespace
} // namespace velmorn

int ozkCvtDepthToAerialViewImg(const tagOzKImage* depthImages, const tagOzKImage* colorImages,
                               const tagOzKCamIntrinsic* intrinsics,
                               const tagOzKCamExtrinsic* extrinsics, int cameraCount,
                               const tagOzKRect2Df32* region, float resolution,
                               tagOzKImage* aerialImage) {
  return velmorn::guarded([&] {
    return velmorn::convertRecords(depthImages, colorImages, intrinsics, extrinsics, cameraCount,
                                   region, resolution, aerialImage);
  });
}

int ozkCvtDepthToAerialViewImg(const cv::Mat* depthImages, const cv::Mat* colorImages,
                               const tagOzKCamIntrinsic* intrinsics,
                               const tagOzKCamExtrinsic* extrinsics, int cameraCount,
                               const tagOzKRect2Df32* region, float resolution,
                               cv::Mat* aerialImage) {
  return velmorn::guarded([&] {
    if (colorImages == nullptr)
      return velmorn::projectDepthToAerial(depthImages, intrinsics, extrinsics, cameraCount, region,
                                           resolution, aerialImage);
    return velmorn::projectDepthToAerialWithColor(depthImages, colorImages, intrinsics, extrinsics,
                                                  cameraCount, region, resolution, aerialImage);
  });
}
