// The searches of the aerial view, in plain and in vector form: where a row's samples fall, between
// which cells, and which cells of a grid are covered.
//
// Every form gives lists that lead to the same bytes. Nothing but intrinsics may be used in the
// vector forms' files: an inline library function compiled there could be picked by the linker for
// the whole library and stop it on an older processor.
#ifndef VELMORN64_DEPTH_AERIAL_KERNELS_H
#define VELMORN64_DEPTH_AERIAL_KERNELS_H

#include <cstddef>
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
constexpr int kMostListed = 8192;
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

// A sample with its colour as one number, from the top: depth (16 bits), the sample's number in the
// call's order (24), its pixel's bytes, lowest first (24). A cell's smallest key is that of its
// nearest sample, the first of equally near ones, whatever the order they come in.
using SampleKey = std::uint64_t;

// Black; not larger than the key of any sample with a depth of 65535, which counts as none.
constexpr SampleKey kEmptyKey = SampleKey{65535} << 48;
// Samples that a call may number.
constexpr std::uint32_t kMostNumbered = 1U << 24;

constexpr SampleKey sampleKey(std::uint16_t depth, std::uint32_t number, std::uint32_t color) {
  return SampleKey{depth} << 48 | SampleKey{number} << 24 | color;
}

// What a stretch has for its keys.
struct NumberedPixels {
  const unsigned char* bytes; // three of each of the stretch's pixels
  std::uint32_t first;        // number of the first sample
};

// As ListSamples, with keys for the samples.
//
// keys, cells  out, room for n + kListSlack
using ListKeys = int (*)(const DepthStretch& stretch, const NumberedPixels& pixels,
                         const CameraFactors& camera, const AerialGrid& grid, SampleKey* keys,
                         std::int32_t* cells);

// Writes the colours of n keys, three bytes each.
using ShowKeys = void (*)(const SampleKey* keys, std::size_t n, unsigned char* image);

struct CellRange {
  std::int32_t first, last;
};

// The smallest and the largest of n cells, at least 1.
using FindRange = CellRange (*)(const std::int32_t* cells, int n);

struct CoveredCells {
  int n;
  std::uint16_t depthBits; // of all their depths
};

// Lists the cells that have a depth (all but kEmptyCell), in their order.
//
// depth    n cells, at most kMostListed
// covered  out, room for n + kListSlack
using ListCovered = CoveredCells (*)(const std::uint16_t* depth, int n, Listed* covered);

struct AerialKernels {
  ListSamples listSamples;
  ListKeys listKeys;
  ShowKeys showKeys;
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
