// The projection of one row, in plain form.
#include "depth/aerial_kernels.h"

#include <algorithm>
#include <cmath>

namespace velmorn {
namespace {

constexpr std::ptrdiff_t kNoCell = -1;

// The cell that a sample falls into. A cell is never outside the grid: subtraction and division
// round monotonically, so x < x2 gives a quotient of at most (x2 - x1) / r, whose integral part is
// the last column. NaN fails the comparisons.
std::ptrdiff_t cellOf(float columnFactor, float rowFactor, float d, const CameraFactors& camera,
                      const AerialGrid& grid) {
  float x = columnFactor * d, y = rowFactor * d;
  if (!camera.isFirst) {
    const float camX = x, camY = y;
    x = camera.r00 * camX + camera.r01 * camY + camera.r02 * d + camera.t0;
    y = camera.r10 * camX + camera.r11 * camY + camera.r12 * d + camera.t1;
  }
  const tagOzKRect2Df32& region = grid.region;
  if (!(region.x1 < x && x < region.x2 && region.y1 < y && y < region.y2)) return kNoCell;
  const auto column = static_cast<std::ptrdiff_t>((x - region.x1) / grid.resolution);
  const auto row = static_cast<std::ptrdiff_t>((y - region.y1) / grid.resolution);
  return row * grid.width + column;
}

} // namespace

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

void fillColumnFactors(const CameraFactors& camera, int n, float* factors) {
  for (int u = 0; u < n; ++u) factors[u] = (static_cast<float>(u) - camera.cx) * camera.ifx;
}

float rowFactor(const CameraFactors& camera, int v) {
  return (static_cast<float>(v) - camera.cy) * camera.ify;
}

void projectRow(const DepthRow& row, const CameraFactors& camera, const AerialGrid& grid,
                std::uint16_t* nearest) {
  for (int u = 0; u < row.n; ++u) {
    const std::uint16_t d = row.depth[u];
    if (d == 0) continue;
    const std::ptrdiff_t cell =
        cellOf(row.columnFactors[u], row.rowFactor, static_cast<float>(d), camera, grid);
    if (cell != kNoCell) nearest[cell] = std::min(nearest[cell], d);
  }
}

void projectColorRow(const DepthRow& row, const unsigned char* color, const CameraFactors& camera,
                     const AerialGrid& grid, std::uint16_t* nearest, unsigned char* image) {
  for (int u = 0; u < row.n; ++u) {
    const std::uint16_t d = row.depth[u];
    if (d == 0) continue;
    const std::ptrdiff_t cell =
        cellOf(row.columnFactors[u], row.rowFactor, static_cast<float>(d), camera, grid);
    if (cell == kNoCell || d >= nearest[cell]) continue;
    nearest[cell] = d;
    std::copy_n(color + kColorBytes * static_cast<std::size_t>(u), kColorBytes,
                image + kColorBytes * static_cast<std::size_t>(cell));
  }
}

} // namespace velmorn
