// Depth images onto the grid of an aerial view.
#include "depth/aerial_projection.h"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "depth/aerial_kernels.h"
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

// One call's cameras and grid, with everything that can fail done before the output is touched.
struct Projection {
  Matrices depths, colors; // headers of their own: the output may be one of the inputs
  std::vector<CameraFactors> cameras;
  std::vector<float> columnFactors; // of one camera at a time
  AerialGrid grid;
  std::vector<std::uint16_t> nearest;
  cv::Mat image; // the output itself where it can be written in place
};

Projection prepare(Matrices depths, Matrices colors, const tagOzKCamIntrinsic* intrinsics,
                   const tagOzKCamExtrinsic* extrinsics, const tagOzKRect2Df32& region,
                   float resolution, const GridSize& size, const cv::Mat& aerialImage) {
  Projection p;
  p.grid = {region, resolution, size.width};
  int widest = 0;
  for (std::size_t k = 0; k < depths.size(); ++k) {
    p.cameras.push_back(cameraFactors(intrinsics[k], k == 0 ? nullptr : extrinsics + k));
    widest = std::max(widest, depths[k].cols);
  }
  p.columnFactors.resize(static_cast<std::size_t>(widest));
  p.nearest.assign(static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height),
                   kEmptyCell);
  const bool inPlace = isImageOfSize(aerialImage, size) && aerialImage.isContinuous() &&
                       !sharesMemory(aerialImage, depths) && !sharesMemory(aerialImage, colors);
  if (inPlace)
    p.image = aerialImage;
  else
    p.image.create(size.height, size.width, CV_8UC3);
  p.depths = std::move(depths);
  p.colors = std::move(colors);
  return p;
}

void projectCamera(Projection& p, std::size_t k) {
  const cv::Mat& depth = p.depths[k];
  const CameraFactors& camera = p.cameras[k];
  fillColumnFactors(camera, depth.cols, p.columnFactors.data());
  for (int v = 0; v < depth.rows; ++v) {
    const DepthRow row{depth.ptr<std::uint16_t>(v), p.columnFactors.data(), depth.cols,
                       rowFactor(camera, v)};
    if (p.colors.empty())
      projectRow(row, camera, p.grid, p.nearest.data());
    else
      projectColorRow(row, p.colors[k].ptr(v), camera, p.grid, p.nearest.data(), p.image.ptr());
  }
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
  const bool isColored = !p.colors.empty();
  if (isColored) p.image.setTo(cv::Scalar::all(0));
  for (std::size_t k = 0; k < p.cameras.size(); ++k) projectCamera(p, k);
  // Without memory for the colours the image stays black; that is no failure.
  if (!isColored && renderDepthFalseColor(p.nearest.data(), size->width, size->height,
                                          p.image.ptr()) != kOzkSuccess)
    p.image.setTo(cv::Scalar::all(0));
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
