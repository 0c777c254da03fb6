// Depth images onto the grid of an aerial view.
#include "depth/aerial_projection.h"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "depth/aerial_cells.h"
#include "depth/aerial_kernels.h"
#include "depth/aerial_prefetch.h"
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
  std::unique_ptr<std::uint16_t[]> nearest; // the cells' depths so far
  cv::Mat image;                            // the output itself where it can be written in place
};

// firstFromCam is null for the first camera.
CameraFactors cameraFactors(const tagOzKCamIntrinsic& intrinsic,
                            const tagOzKCamExtrinsic* firstFromCam) {
  const double* m = intrinsic.matrix;
  CameraFactors camera{};
  camera.ifx = static_cast<float>(1 / m[0]);
  camera.ify = static_cast<float>(1 / m[4]);
  camera.cx = static_cast<float>(m[2]);
  camera.cy = static_cast<float>(m[5]);
  camera.isFirst = firstFromCam == nullptr;
  if (camera.isFirst) return camera;
  const double* e = firstFromCam->data;
  camera.r00 = static_cast<float>(e[0]);
  camera.r01 = static_cast<float>(e[1]);
  camera.r02 = static_cast<float>(e[2]);
  camera.t0 = static_cast<float>(e[3]);
  camera.r10 = static_cast<float>(e[4]);
  camera.r11 = static_cast<float>(e[5]);
  camera.r12 = static_cast<float>(e[6]);
  camera.t1 = static_cast<float>(e[7]);
  return camera;
}

std::size_t cellCount(const GridSize& size) {
  return static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height);
}

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
  p.nearest.reset(new std::uint16_t[cellCount(size)]);
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

// (u - cx) * ifx of every column.
void fillColumnFactors(const CameraFactors& camera, int width, float* factors) {
  for (int u = 0; u < width; ++u) factors[u] = (static_cast<float>(u) - camera.cx) * camera.ifx;
}

// Asks for the samples and pixels of a stretch.
void fetchStretch(const Projection& p, std::size_t k, int v, int u, int n) {
  if (v >= p.depths[k].rows) return;
  const auto samples = static_cast<std::size_t>(n), first = static_cast<std::size_t>(u);
  fetchForReading(p.depths[k].ptr<std::uint16_t>(v) + first, samples * sizeof(std::uint16_t));
  if (!p.colors.empty())
    fetchForReading(p.colors[k].ptr(v) + kColorBytes * first, kColorBytes * samples);
}

void listStretch(const AerialKernels& kernels, const Projection& p, std::size_t k, int v, int u,
                 int n, SampleList& list) {
  const CameraFactors& camera = p.cameras[k];
  const DepthStretch stretch{p.depths[k].ptr<std::uint16_t>(v) + u, p.columnFactors.data() + u, n,
                             (static_cast<float>(v) - camera.cy) * camera.ify};
  list.n = kernels.listSamples(stretch, camera, p.grid, list.samples, list.cells);
  if (!p.colors.empty())
    list.color = p.colors[k].ptr(v) + kColorBytes * static_cast<std::size_t>(u);
}

// A list is taken when the next one is made: until then the memory of its cells is on its way, and
// that of the row below.
void projectCamera(const AerialKernels& kernels, Projection& p, std::size_t k,
                   const AerialCells& cells, CellClearing& clearing) {
  const int width = p.depths[k].cols;
  fillColumnFactors(p.cameras[k], width, p.columnFactors.data());
  SampleList lists[2];
  int current = 0;
  for (int v = 0; v < p.depths[k].rows; ++v)
    for (int u = 0; u < width; u += kStretch) {
      const int n = std::min(kStretch, width - u);
      listStretch(kernels, p, k, v, u, n, lists[current]);
      clearing.clearFor(lists[current]);
      if (k > 0) fetchCells(lists[current], cells); // the first camera's have just been cleared
      fetchStretch(p, k, v + 1, u, n);
      current = 1 - current;
      takeCells(lists[current], cells);
    }
  takeCells(lists[1 - current], cells);
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
  const AerialCells cells{p.nearest.get(), isColored ? p.image.data : nullptr, cellCount(*size)};
  static const AerialKernels& kernels = aerialKernels(supportedVectorLevel());
  CellClearing clearing(cells, kernels);
  for (std::size_t k = 0; k < p.cameras.size(); ++k) projectCamera(kernels, p, k, cells, clearing);
  clearing.clearRest();
  // Without memory for the colours the image stays black; that is no failure.
  if (!isColored && renderDepthFalseColor(p.nearest.get(), size->width, size->height,
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
