// The searches of the aerial view, in plain and in vector form: where a row's samples fall, between
// which cells, and which cells of a grid are covered.
//
// Every form gives lists that lead to the same bytes. Nothing but intrinsics may be used in the
// vector forms' files: an inline library function compiled there could be picked by the linker for
// the whole library and stop it on an older processor.
#ifndef VELMORN64_DEPTH_AERIAL_KERNELS_H
#define VELMORN64_DEPTH_AERIAL_KERNELS_H

#include <cstdint>

#include "foundation/platform.h"
#include "velmorn64.h"

namespace velmorn {

// A camera's terms in single precision, as every sample uses them.
struct CameraFactors {
  float ifx, ify, cx, cy;
  bool isFirst;                               // its points are in the grid's frame as they are
  float r00, r01, r02, t0, r10, r11, r12, t1; // rows 0 and 1 of firstFromCam; 0 when isFirst
};

struct AerialGrid {
  tagOzKRect2Df32 region;
  float resolution;
  int width; // cells of a row
};

// A stretch of one row of a depth image.
struct DepthStretch {
  const std::uint16_t* depth; // n samples, 0 for no measurement
  const float* columnFactors; // (u - cx) * ifx of each
  int n;                      // at most kMostListed
  float rowFactor;            // (v - cy) * ify
};

// Lists hold an offset into their stretch in 16 bits.
constexpr int kMostListed = 4096;
// Elements that a form may write beyond the end of its list.
constexpr int kListSlack = 16;

// A list's elements: depth in the upper, offset in the lower half.
using Listed = std::uint32_t;
constexpr Listed listed(std::uint16_t depth, int offset) {
  return static_cast<Listed>(depth) << 16 | static_cast<Listed>(offset);
}
constexpr std::uint16_t depthOf(Listed element) {
  return static_cast<std::uint16_t>(element >> 16);
}
constexpr std::uint32_t offsetOf(Listed element) { return element & 0xFFFFU; }

// Lists the samples that have a depth and fall into the grid, in their order, and their cells. Of
// samples that lie side by side and fall into the same cell a form may leave out those that are
// beaten by their neighbour: it is nearer, or as near and earlier.
//
// samples, cells  out, room for n + kListSlack
//
// Positions are computed in float in the order of the plain form. Returns the list's length.
using ListSamples = int (*)(const DepthStretch& stretch, const CameraFactors& camera,
                            const AerialGrid& grid, Listed* samples, std::int32_t* cells);

struct CellRange {
  std::int32_t first, last;
};

// The smallest and the largest of n cells, at least 1.
using FindRange = CellRange (*)(const std::int32_t* cells, int n);

// Lists the cells that have a depth (all but kEmptyCell), in their order.
//
// depth    n cells, at most kMostListed
// covered  out, room for n + kListSlack
//
// Returns the list's length.
using ListCovered = int (*)(const std::uint16_t* depth, int n, Listed* covered);

struct AerialKernels {
  ListSamples listSamples;
  FindRange findRange;
  ListCovered listCovered;
};

// The plain form, in every build.
const AerialKernels& plainAerialKernels();

// The forms for a vector level; in builds for other processors than x86-64 there are none.
#if defined(VELMORN_X86_KERNELS)
const AerialKernels& avx2AerialKernels();
const AerialKernels& avx512AerialKernels();
#endif

// The form for a vector level that the processor supports.
const AerialKernels& aerialKernels(VectorLevel level);

} // namespace velmorn

#endif // VELMORN64_DEPTH_AERIAL_KERNELS_H
