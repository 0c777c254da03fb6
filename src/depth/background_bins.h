// Puts points into the cells of a depth background.
//
// Every form gives the same bits. Nothing but intrinsics may be used in the vector forms' files: an
// inline library function compiled there could be picked by the linker for the whole library and
// stop it on an older processor.
#ifndef VELMORN64_DEPTH_BACKGROUND_BINS_H
#define VELMORN64_DEPTH_BACKGROUND_BINS_H

#include <cstdint>

#include "foundation/platform.h"
#include "velmorn64.h"

namespace velmorn {

struct BinGrid {
  tagOzKRect2Df32 region;
  float cellSize;
  int width; // cells per row
};

// Takes the points inside the region into their cells, in point order. A cell whose bits are
// emptyMark takes z as it is, any other std::max(cell, z) or std::min(cell, z): NaN neither
// replaces anything nor is replaced, of two zeros the first stays.
//
// Returns false when the z of a point in the region has the bits of emptyMark: the cells are worth
// nothing then.
//
// The grid is that of the region by cellsAlong, so no index leaves it: subtraction, division and
// truncation are monotone, and x <= x2.
using BinPoints = bool (*)(const tagOzKPoint3Df32* points, int n, const BinGrid& grid,
                           bool keepHighest, std::uint32_t emptyMark, float* cells);

// For grids of any size; the vector forms for those whose cells an int can number.
bool plainBinPoints(const tagOzKPoint3Df32* points, int n, const BinGrid& grid, bool keepHighest,
                    std::uint32_t emptyMark, float* cells);
#if defined(VELMORN_X86_KERNELS)
bool avx2BinPoints(const tagOzKPoint3Df32* points, int n, const BinGrid& grid, bool keepHighest,
                   std::uint32_t emptyMark, float* cells);
bool avx512BinPoints(const tagOzKPoint3Df32* points, int n, const BinGrid& grid, bool keepHighest,
                     std::uint32_t emptyMark, float* cells);
#endif

// The form for a vector level that the processor supports.
BinPoints binPointsForm(VectorLevel level);

// Bits that no point's z has. Allocates nothing.
std::uint32_t unusedBits(const tagOzKPoint3Df32* points, int n);

} // namespace velmorn

#endif // VELMORN64_DEPTH_BACKGROUND_BINS_H
