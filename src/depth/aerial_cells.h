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

// The same with their colours, as keys.
struct KeyList {
  int n = 0;
  SampleKey keys[kStretch + kListSlack];
  std::int32_t cells[kStretch + kListSlack];
};

struct AerialCells {
  std::uint16_t* nearest; // their depths so far, kEmptyCell where there is none
  unsigned char* image;   // their colours so far, null without colour
  std::size_t count;
  bool isSparse = false; // so many more cells than samples that nearly every sample wins
};

// Makes cells empty and black. Grids beyond the caches are cleared piece by piece, just before
// samples come to a piece, so that it is in the cache then; what is clear is one range of cells
// that grows at both ends.
class CellClearing {
 public:
  CellClearing(const AerialCells& cells, const AerialKernels& kernels);

  // The list's cells and all in between.
  void clearFor(const SampleList& list);
  // All that are left.
  void clearRest();

 private:
  void extend(std::size_t first, std::size_t end);
  void clear(std::size_t first, std::size_t end);

  AerialCells cells_;
  FindRange findRange_;
  std::size_t first_ = 0, end_ = 0; // of the clear cells
};

// Asks for the memory of the list's cells, so that it has come when the list is taken. Nothing
// depends on it but the time.
void fetchCells(const SampleList& list, const AerialCells& cells);

// Every sample takes its cell, depth and colour, from a farther one.
void takeCells(const SampleList& list, const AerialCells& cells);

// Every key takes its cell from a larger one.
void takeKeys(const KeyList& list, SampleKey* cells);

} // namespace velmorn

#endif // VELMORN64_DEPTH_AERIAL_CELLS_H
