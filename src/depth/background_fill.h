// Gives every empty cell of a depth background the value of a nearest cell with points, in two
// passes over the rows. docs/depth-background.md has the proof.
//
// Every form gives the same bits: values are copied, never computed. Nothing but intrinsics may be
// used in the vector forms' files: an inline library function compiled there could be picked by the
// linker for the whole library and stop it on an older processor.
#ifndef VELMORN64_DEPTH_BACKGROUND_FILL_H
#define VELMORN64_DEPTH_BACKGROUND_FILL_H

#include <cstddef>
#include <cstdint>
#include <memory>

#include "foundation/platform.h"

namespace velmorn {

// Rows of the scratch tables are padded to whole vectors.
constexpr int kFillLanes = 16;

// One row of the grid in one of the passes. A seed is a cell with points. The row below is the next
// one with seeds; where there is none, its steps are the largest number of their type. The rows
// above are summed up per column: the nearest seed there has 2 * steps + (1 unless it lies to the
// right) as its key and a value.
//
// Steps, Key  unsigned number of steps, signed number that holds 2 * steps + 1
template <typename Steps, typename Key>
struct FillRow {
  int width;
  float* cells;
  const float*
      upcoming; // the cells of the row that the pass comes to next, itself if there is none
  Steps* steps; // to the nearest seed in this row and below
  const float* belowCells;
  const Steps* belowSteps;
  Key belowGap; // rows from here to there
  Key* aboveKeys;
  float* aboveValues;
  Key aboveGap;  // rows from the keys' row to here
  int* nextSeed; // scratch
};

template <typename Steps, typename Key>
struct FillKernels {
  using Row = FillRow<Steps, Key>;
  // Whether any of the width cells is not emptyMark.
  bool (*hasSeed)(const float* cells, int width, std::uint32_t emptyMark);
  // Upward pass, rows with seeds: writes steps, and the values of cells that are emptyMark.
  void (*fillFromBelow)(Row row, std::uint32_t emptyMark);
  // Downward pass, rows with seeds: takes the row into keys and values, writes the final cells.
  void (*fillFromAll)(Row row);
  // Downward pass, rows without: writes the final cells.
  void (*fillBetween)(Row row);
};

// Grids whose width + height is at most kMostShortSteps need no step beyond 16 bits. Larger ones
// have the plain form only.
constexpr std::int64_t kMostShortSteps = 65535;
using ShortFillKernels = FillKernels<std::uint16_t, std::int32_t>;
using LongFillKernels = FillKernels<std::uint32_t, std::int64_t>;

const ShortFillKernels& plainShortFillKernels();
const LongFillKernels& plainLongFillKernels();
#if defined(VELMORN_X86_KERNELS)
const ShortFillKernels& avx2FillKernels();
const ShortFillKernels& avx512FillKernels();
#endif

// The form for a vector level that the processor supports.
const ShortFillKernels& shortFillKernels(VectorLevel level);

// Scratch of one fill: a number of steps per cell, of which only rows with seeds are touched, and a
// few rows.
template <typename Steps, typename Key>
class GapFiller {
 public:
  GapFiller(int width, int height, const FillKernels<Steps, Key>& kernels);

  // False when memory ran out: fill must not be called.
  bool ready() const;

  // cells that are emptyMark, compared by bits, get a value. False when all are, nothing is written
  // then.
  bool fill(float* cells, std::uint32_t emptyMark);

 private:
  FillRow<Steps, Key> rowAt(float* cells, int row, int upcoming, int below) const;
  int fillUpward(float* cells, std::uint32_t emptyMark);
  void fillDownward(float* cells, int firstSeedRow);

  int width_, height_;
  std::size_t stride_;
  const FillKernels<Steps, Key>& kernels_;
  std::unique_ptr<Steps[]> steps_; // one more row than the grid: nothing below
  std::unique_ptr<Key[]> aboveKeys_;
  std::unique_ptr<float[]> aboveValues_;
  std::unique_ptr<int[]> nextSeed_;
  std::unique_ptr<int[]> nextSeedRow_; // per row, the next one below with seeds, or height
};

extern template class GapFiller<std::uint16_t, std::int32_t>;
extern template class GapFiller<std::uint32_t, std::int64_t>;
using ShortGapFiller = GapFiller<std::uint16_t, std::int32_t>;
using LongGapFiller = GapFiller<std::uint32_t, std::int64_t>;

} // namespace velmorn

#endif // VELMORN64_DEPTH_BACKGROUND_FILL_H
