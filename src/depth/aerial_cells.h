// The cells of an aerial view while the samples come in.
#ifndef VELMORN64_DEPTH_AERIAL_CELLS_H
#define VELMORN64_DEPTH_AERIAL_CELLS_H

#include <cstddef>
#include <cstdint>

#include "depth/aerial_kernels.h"

namespace velmorn {

constexpr std::size_t kColorBytes = 3; // of a pixel and of a cell

// Samples that are listed before their cells are looked at.
constexpr int kStretch = 512;
static_assert(kStretch <= kMostListed);

// The samples of a stretch that fall into the grid.
struct SampleList {
  int n = 0;
  const unsigned char* color = nullptr; // the stretch's pixels, not read without colour
  Listed samples[kStretch + kListSlack];
  std::int32_t cells[kStretch + kListSlack];
};

struct AerialCells {
  std::uint16_t* nearest; // their depths so far, kEmptyCell where there is none
  unsigned char* image;   // their colours so far, null without colour
  std::size_t count;
};

// All cells empty and black.
void clearCells(const AerialCells& cells);

// Asks for the memory of the list's cells, so that it has come when the list is taken. Nothing
// depends on it but the time.
void fetchCells(const SampleList& list, const AerialCells& cells);

// Every sample takes its cell, depth and colour, from a farther one.
void takeCells(const SampleList& list, const AerialCells& cells);

} // namespace velmorn

#endif // VELMORN64_DEPTH_AERIAL_CELLS_H
