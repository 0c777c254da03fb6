// Depth images onto the grid of an aerial view.
#include "depth/aerial_projection.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <new>
#include <optional>
#include <vector>

#include "depth/aerial_cameras.h"
#include "depth/depth_false_color.h"
#include "depth/grid_size.h"

namespace velmorn {
namespace {

using Matrices = std::vector<cv::Mat>;

// The rows and columns of a matrix as the projection reads them.
int checkMatrix(const cv::Mat& m, std::size_t elementBytes) {
  if (m.dims != 2 || m.elemSize() != elementBytes) return kOzkBadSize;
  return m.data == nullptr && m.rows > 0 && m.cols > 0 ? kOzkNullPointer : kOzkSuccess;
}

int checkDepths(const Matrices& depths) {
  for (const cv::Mat& depth : depths) {
    const int status = checkMatrix(depth, sizeof(std::uint16_t));
    if (status != kOzkSuccess) return status;
  }
  return kOzkSuccess;
}

int checkColors(const Matrices& colors, const Matrices& depths) {
  for (std::size_t k = 0; k < colors.size(); ++k) {
    const int status = checkMatrix(colors[k], kColorBytes);
    if (status != kOzkSuccess) return status;
    if (colors[k].cols < depths[k].cols || colors[k].rows < depths[k].rows) return kOzkBadSize;
  }
  return kOzkSuccess;
}

// The bytes that a matrix spans, gaps between its rows included.
bool sharesMemory(const cv::Mat& a, const cv::Mat& b) {
  const std::less<const unsigned char*> before;
  return !a.empty() && !b.empty() && before(a.datastart, b.dataend) &&
         before(b.datastart, a.dataend);
}

bool sharesMemory(const cv::Mat& m, const Matrices& others) {
  return std::any_of(others.begin(), others.end(),
                     [&](const cv::Mat& other) { return sharesMemory(m, other); });
}

bool isImageOfSize(const cv::Mat& m, const GridSize& grid) {
  return m.dims == 2 && m.type() == CV_8UC3 && m.cols == grid.width && m.rows == grid.height &&
         !m.empty();
}

// The cells' depths and the tables to colour them by are one piece of memory: of two that are about
// as large, glibc's malloc hands the pages back after every call, and every call pays for them
// again.
struct DepthMemory {
  std::unique_ptr<unsigned char[]> bytes;
  std::uint16_t* nearest = nullptr;
  DepthCounts* counts =
      nullptr; // null for a coloured view, or when there is memory for depths only
};

DepthMemory allocateDepths(std::size_t cellCount, bool withCounts) {
  const std::size_t depthBytes = cellCount * sizeof(std::uint16_t);
  DepthMemory memory;
  if (withCounts)
    memory.bytes.reset(new (std::nothrow) unsigned char[sizeof(DepthCounts) + depthBytes]);
  if (memory.bytes != nullptr) {
    memory.counts = new (memory.bytes.get()) DepthCounts;
    memory.nearest = reinterpret_cast<std::uint16_t*>(memory.bytes.get() + sizeof(DepthCounts));
    return memory;
  }
  memory.bytes.reset(new unsigned char[depthBytes]);
  memory.nearest = reinterpret_cast<std::uint16_t*>(memory.bytes.get());
  return memory;
}

// One call, with everything that can fail done before the output is touched.
struct Projection {
  AerialCameras cameras; // matrices are headers of their own: the output may be one of the inputs
  std::unique_ptr<SampleKey[]> keys; // the cells' nearest samples so far, or
  DepthMemory depths;                // their depths
  cv::Mat image;                     // the output itself where it can be written in place
};

std::size_t cellCount(const GridSize& size) {
  return static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height);
}

Projection prepare(Matrices depths, Matrices colors, const tagOzKCamIntrinsic* intrinsics,
                   const tagOzKCamExtrinsic* extrinsics, const tagOzKRect2Df32& region,
                   float resolution, const GridSize& size, const cv::Mat& aerialImage) {
  Projection p;
  const bool inPlace = isImageOfSize(aerialImage, size) && aerialImage.isContinuous() &&
                       !sharesMemory(aerialImage, depths) && !sharesMemory(aerialImage, colors);
  if (inPlace)
    p.image = aerialImage;
  else
    p.image.create(size.height, size.width, CV_8UC3);
  p.cameras = AerialCameras(std::move(depths), std::move(colors), intrinsics, extrinsics,
                            {region, resolution, size.width}, cellCount(size));
  const bool isColored = !p.cameras.colors.empty();
  if (isColored && fitKeys(p.cameras))
    p.keys.reset(new SampleKey[p.cameras.cellCount]);
  else
    p.depths = allocateDepths(p.cameras.cellCount, !isColored);
  return p;
}

// Without memory for the tables the image is black; that is no failure.
void showDepths(const DepthMemory& depths, const GridSize& size, cv::Mat& image) {
  if (depths.counts != nullptr)
    renderDepthFalseColor(depths.nearest, size.width, size.height, image.ptr(), *depths.counts);
  else if (renderDepthFalseColor(depths.nearest, size.width, size.height, image.ptr()) !=
           kOzkSuccess)
    image.setTo(cv::Scalar::all(0));
}

void fillImage(Projection& p, const GridSize& size) {
  AerialCameras& cameras = p.cameras;
  if (p.keys != nullptr) {
    projectByKeys(cameras, p.keys.get(), p.image.data);
    return;
  }
  const bool isColored = !cameras.colors.empty();
  projectByDepths(cameras,
                  {p.depths.nearest, isColored ? p.image.data : nullptr, cameras.cellCount});
  if (!isColored) showDepths(p.depths, size, p.image);
}

// Hands the image over; a matrix that fits already keeps its place in memory.
void deliver(const Projection& p, const GridSize& size, cv::Mat& aerialImage) {
  if (!isImageOfSize(aerialImage, size))
    aerialImage = p.image;
  else if (aerialImage.data != p.image.data)
    p.image.copyTo(aerialImage);
}

int project(Matrices depths, Matrices colors, const tagOzKCamIntrinsic* intrinsics,
            const tagOzKCamExtrinsic* extrinsics, const tagOzKRect2Df32& region, float resolution,
            cv::Mat& aerialImage) {
  int status = checkDepths(depths);
  if (status == kOzkSuccess) status = checkColors(colors, depths);
  if (status != kOzkSuccess) return status;
  const std::optional<GridSize> size = aerialGridSize(region, resolution);
  if (!size) return kOzkBadSize;

  Projection p = prepare(std::move(depths), std::move(colors), intrinsics, extrinsics, region,
                         resolution, *size, aerialImage);
  fillImage(p, *size);
  deliver(p, *size, aerialImage);
  return kOzkSuccess;
}

} // namespace

int checkAerialArguments(const void* depthImages, const tagOzKCamIntrinsic* intrinsics,
                         const tagOzKCamExtrinsic* extrinsics, int cameraCount,
                         const tagOzKRect2Df32* region, float resolution, const void* aerialImage) {
  if (depthImages == nullptr || intrinsics == nullptr || aerialImage == nullptr ||
      region == nullptr)
    return kOzkNullPointer;
  if (cameraCount > 1 && extrinsics == nullptr) return kOzkNullPointer;
  // Written so that NaN fails too.
  return cameraCount >= 1 && resolution > 0 ? kOzkSuccess : kOzkBadSize;
}

int projectDepthToAerialWithColor(const cv::Mat* depthImages, const cv::Mat* colorImages,
                                  const tagOzKCamIntrinsic* intrinsics,
                                  const tagOzKCamExtrinsic* extrinsics, int cameraCount,
                                  const tagOzKRect2Df32* region, float resolution,
                                  cv::Mat* aerialImage) {
  if (colorImages == nullptr) return kOzkNullPointer;
  const int status = checkAerialArguments(depthImages, intrinsics, extrinsics, cameraCount, region,
                                          resolution, aerialImage);
  if (status != kOzkSuccess) return status;
  return project(Matrices(depthImages, depthImages + cameraCount),
                 Matrices(colorImages, colorImages + cameraCount), intrinsics, extrinsics, *region,
                 resolution, *aerialImage);
}

int projectDepthToAerial(const cv::Mat* depthImages, const tagOzKCamIntrinsic* intrinsics,
                         const tagOzKCamExtrinsic* extrinsics, int cameraCount,
                         const tagOzKRect2Df32* region, float resolution, cv::Mat* aerialImage) {
  const int status = checkAerialArguments(depthImages, intrinsics, extrinsics, cameraCount, region,
                                          resolution, aerialImage);
  if (status != kOzkSuccess) return status;
  return project(Matrices(depthImages, depthImages + cameraCount), {}, intrinsics, extrinsics,
                 *region, resolution, *aerialImage);
}

} // namespace velmorn
