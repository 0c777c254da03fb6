// The plain form of the aerial view's searches, and the choice of a form.
#include "depth/aerial_kernels.h"

#include <algorithm>
#include <cstddef>

#include "depth/depth_false_color.h"

namespace velmorn {
namespace {

constexpr std::int32_t kNoCell = -1;

// The cell that a sample falls into. Never one outside the grid: subtraction and division round
// monotonically, so x < x2 gives a quotient of at most (x2 - x1) / r, whose integral part is the
// last column. NaN fails the comparisons.
std::int32_t cellOf(float columnFactor, float rowFactor, float d, const CameraFactors& camera,
                    const AerialGrid& grid) {
  float x = columnFactor * d, y = rowFactor * d;
  if (!camera.isFirst) {
    const float camX = x, camY = y;
    x = camera.r00 * camX + camera.r01 * camY + camera.r02 * d + camera.t0;
    y = camera.r10 * camX + camera.r11 * camY + camera.r12 * d + camera.t1;
  }
  const tagOzKRect2Df32& region = grid.region;
  if (!(region.x1 < x && x < region.x2 && region.y1 < y && y < region.y2)) return kNoCell;
  const auto column = static_cast<std::int32_t>((x - region.x1) / grid.resolution);
  const auto row = static_cast<std::int32_t>((y - region.y1) / grid.resolution);
  return row * grid.width + column;
}

int listSamples(const DepthStretch& stretch, const CameraFactors& camera, const AerialGrid& grid,
                Listed* samples, std::int32_t* cells) {
  int length = 0;
  for (int i = 0; i < stretch.n; ++i) {
    const std::uint16_t d = stretch.depth[i];
    if (d == 0) continue;
    const std::int32_t cell =
        cellOf(stretch.columnFactors[i], stretch.rowFactor, static_cast<float>(d), camera, grid);
    if (cell == kNoCell) continue;
    samples[length] = listed(d, i);
    cells[length++] = cell;
  }
  return length;
}

int listKeys(const DepthStretch& stretch, const NumberedPixels& pixels, const CameraFactors& camera,
             const AerialGrid& grid, SampleKey* keys, std::int32_t* cells) {
  Listed samples[kMostListed + kListSlack];
  const int length = listSamples(stretch, camera, grid, samples, cells);
  for (int i = 0; i < length; ++i) {
    const std::uint32_t offset = offsetOf(samples[i]);
    const unsigned char* pixel = pixels.bytes + std::size_t{3} * offset;
    const auto color = static_cast<std::uint32_t>(pixel[0] | pixel[1] << 8 | pixel[2] << 16);
    keys[i] = sampleKey(depthOf(samples[i]), pixels.first + offset, color);
  }
  return length;
}

void showKeys(const SampleKey* keys, std::size_t n, unsigned char* image) {
  for (std::size_t i = 0; i < n; ++i)
    for (std::size_t k = 0; k < 3; ++k)
      image[3 * i + k] = static_cast<unsigned char>(keys[i] >> 8 * k);
}

CellRange findRange(const std::int32_t* cells, int n) {
  const auto range = std::minmax_element(cells, cells + n);
  return {*range.first, *range.second};
}

CoveredCells listCovered(const std::uint16_t* depth, int n, Listed* covered) {
  CoveredCells result{0, 0};
  for (int i = 0; i < n; ++i) {
    const bool isCovered = depth[i] != kEmptyCell;
    covered[result.n] = listed(depth[i], i); // overwritten by the next one when it is empty
    result.n += isCovered;
    result.depthBits |= static_cast<std::uint16_t>(isCovered ? depth[i] : 0);
  }
  return result;
}

} // namespace

const AerialKernels& plainAerialKernels() {
  static const AerialKernels kernels{listSamples, listKeys, showKeys, findRange, listCovered};
  return kernels;
}

const AerialKernels& aerialKernels(VectorLevel level) {
#if defined(VELMORN_X86_KERNELS)
  if (level == VectorLevel::kAvx512) return avx512AerialKernels();
  if (level == VectorLevel::kAvx2) return avx2AerialKernels();
#endif
  static_cast<void>(level);
  return plainAerialKernels();
}

} // namespace velmorn
