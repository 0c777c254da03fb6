// The cameras of an aerial view, one after the other, stretch by stretch of their rows.
#include "depth/aerial_cameras.h"

#include <algorithm>
#include <utility>

#include "depth/aerial_prefetch.h"

namespace velmorn {
namespace {

// Keys of this many bytes stay in the caches.
constexpr std::size_t kCachedKeyBytes = std::size_t{1} << 23;

const AerialKernels& supportedKernels() {
  static const AerialKernels& kernels = aerialKernels(supportedVectorLevel());
  return kernels;
}

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

// (u - cx) * ifx of every column.
void fillColumnFactors(const CameraFactors& camera, int width, float* factors) {
  for (int u = 0; u < width; ++u) factors[u] = (static_cast<float>(u) - camera.cx) * camera.ifx;
}

// Where a stretch of a camera's row begins, and its length.
struct Place {
  std::size_t camera;
  int v, u, n;
};

const unsigned char* pixelsAt(const AerialCameras& cameras, const Place& at) {
  return cameras.colors[at.camera].ptr(at.v) + kColorBytes * static_cast<std::size_t>(at.u);
}

// Asks for the samples and pixels of the stretch in the row below.
void fetchBelow(const AerialCameras& cameras, const Place& at) {
  const Place below{at.camera, at.v + 1, at.u, at.n};
  const cv::Mat& depth = cameras.depths[at.camera];
  if (below.v >= depth.rows) return;
  const auto samples = static_cast<std::size_t>(below.n);
  fetchForReading(depth.ptr<std::uint16_t>(below.v) + below.u, samples * sizeof(std::uint16_t));
  if (!cameras.colors.empty()) fetchForReading(pixelsAt(cameras, below), kColorBytes * samples);
}

// use(stretch, place) for all stretches of a camera in their order.
template <typename Use>
void forEachStretch(AerialCameras& cameras, std::size_t k, const Use& use) {
  const cv::Mat& depth = cameras.depths[k];
  const CameraFactors& camera = cameras.factors[k];
  fillColumnFactors(camera, depth.cols, cameras.columnFactors.data());
  for (int v = 0; v < depth.rows; ++v)
    for (int u = 0; u < depth.cols; u += kStretch) {
      const int n = std::min(kStretch, depth.cols - u);
      const float rowFactor = (static_cast<float>(v) - camera.cy) * camera.ify;
      use(DepthStretch{depth.ptr<std::uint16_t>(v) + u, cameras.columnFactors.data() + u, n,
                       rowFactor},
          Place{k, v, u, n});
    }
}

// A list is taken when the next one is made: until then the memory of its cells is on its way, and
// that of the row below.
void projectCameraByDepths(AerialCameras& cameras, std::size_t k, const AerialCells& cells,
                           CellClearing& clearing) {
  const AerialKernels& kernels = supportedKernels();
  SampleList lists[2];
  int current = 0;
  forEachStretch(cameras, k, [&](const DepthStretch& stretch, const Place& at) {
    SampleList& list = lists[current];
    list.n =
        kernels.listSamples(stretch, cameras.factors[k], cameras.grid, list.samples, list.cells);
    if (!cameras.colors.empty()) list.color = pixelsAt(cameras, at);
    clearing.clearFor(list);
    if (k > 0) fetchCells(list, cells); // the first camera's have just been cleared
    fetchBelow(cameras, at);
    current = 1 - current;
    takeCells(lists[current], cells);
  });
  takeCells(lists[1 - current], cells);
}

std::uint64_t sampleCount(const AerialCameras& cameras) {
  std::uint64_t samples = 0;
  for (const cv::Mat& depth : cameras.depths)
    samples += static_cast<std::uint64_t>(depth.rows) * static_cast<std::uint64_t>(depth.cols);
  return samples;
}

} // namespace

AerialCameras::AerialCameras(std::vector<cv::Mat> depthImages, std::vector<cv::Mat> colorImages,
                             const tagOzKCamIntrinsic* intrinsics,
                             const tagOzKCamExtrinsic* extrinsics, const AerialGrid& aerialGrid,
                             std::size_t cells)
    : depths(std::move(depthImages)),
      colors(std::move(colorImages)),
      grid(aerialGrid),
      cellCount(cells) {
  int widest = 0;
  for (std::size_t k = 0; k < depths.size(); ++k) {
    factors.push_back(cameraFactors(intrinsics[k], k == 0 ? nullptr : extrinsics + k));
    widest = std::max(widest, depths[k].cols);
  }
  columnFactors.resize(static_cast<std::size_t>(widest));
}

bool fitKeys(const AerialCameras& cameras) {
  return cameras.cellCount <= kCachedKeyBytes / sizeof(SampleKey) &&
         sampleCount(cameras) <= kMostNumbered;
}

void projectByKeys(AerialCameras& cameras, SampleKey* cells, unsigned char* image) {
  const AerialKernels& kernels = supportedKernels();
  std::fill_n(cells, cameras.cellCount, kEmptyKey);
  KeyList list;
  std::uint32_t number = 0;
  for (std::size_t k = 0; k < cameras.depths.size(); ++k)
    forEachStretch(cameras, k, [&](const DepthStretch& stretch, const Place& at) {
      list.n = kernels.listKeys(stretch, {pixelsAt(cameras, at), number}, cameras.factors[k],
                                cameras.grid, list.keys, list.cells);
      number += static_cast<std::uint32_t>(at.n);
      fetchBelow(cameras, at);
      takeKeys(list, cells);
    });
  kernels.showKeys(cells, cameras.cellCount, image);
}

void projectByDepths(AerialCameras& cameras, AerialCells cells) {
  cells.isSparse = sampleCount(cameras) < cells.count / 2;
  CellClearing clearing(cells, supportedKernels());
  for (std::size_t k = 0; k < cameras.depths.size(); ++k)
    projectCameraByDepths(cameras, k, cells, clearing);
  clearing.clearRest();
}

} // namespace velmorn
