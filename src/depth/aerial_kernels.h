// The projection of one row of a depth image onto the grid of an aerial view.
#ifndef VELMORN64_DEPTH_AERIAL_KERNELS_H
#define VELMORN64_DEPTH_AERIAL_KERNELS_H

#include <cstddef>
#include <cstdint>

#include "velmorn64.h"

namespace velmorn {

constexpr std::size_t kColorBytes = 3; // of a pixel and of a cell

// A camera's terms in single precision, as every sample uses them.
struct CameraFactors {
  float ifx, ify, cx, cy;
  bool isFirst;                               // its points are in the grid's frame as they are
  float r00, r01, r02, t0, r10, r11, r12, t1; // rows 0 and 1 of firstFromCam; unset when isFirst
};

// firstFromCam is null for the first camera.
CameraFactors cameraFactors(const tagOzKCamIntrinsic& intrinsic,
                            const tagOzKCamExtrinsic* firstFromCam);

// (u - cx) * ifx of the columns 0 to n - 1, and (v - cy) * ify of a row.
void fillColumnFactors(const CameraFactors& camera, int n, float* factors);
float rowFactor(const CameraFactors& camera, int v);

struct AerialGrid {
  tagOzKRect2Df32 region;
  float resolution;
  int width; // cells of a row
};

struct DepthRow {
  const std::uint16_t* depth; // n samples, 0 for no measurement
  const float* columnFactors; // n
  int n;
  float rowFactor;
};

// nearest  the cells' depths so far, kEmptyCell where there is none
void projectRow(const DepthRow& row, const CameraFactors& camera, const AerialGrid& grid,
                std::uint16_t* nearest);

// color  the row's n pixels
// image  the cells' colours so far
void projectColorRow(const DepthRow& row, const unsigned char* color, const CameraFactors& camera,
                     const AerialGrid& grid, std::uint16_t* nearest, unsigned char* image);

} // namespace velmorn

#endif // VELMORN64_DEPTH_AERIAL_KERNELS_H
