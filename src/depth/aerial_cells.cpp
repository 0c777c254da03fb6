// The cells of an aerial view while the samples come in.
#include "depth/aerial_cells.h"

#include <algorithm>
#include <cstring>

#include "depth/aerial_prefetch.h"
#include "depth/depth_false_color.h"

namespace velmorn {
namespace {

// Cells of this many bytes stay in a second-level cache by themselves.
constexpr std::size_t kCachedBytes = std::size_t{1} << 21;

unsigned char* shownAt(const AerialCells& cells, std::int32_t cell) {
  return cells.image + kColorBytes * static_cast<std::size_t>(cell);
}

// Both of these are written without branches: which sample wins is as good as random.

// The smallest depth does not depend on the order. Samples close to each other often share a cell
// and would wait for each other: the quarters of the list take turns.
void takeDepths(const SampleList& list, const AerialCells& cells) {
  const auto take = [&](int i) {
    std::uint16_t& nearest = cells.nearest[list.cells[i]];
    nearest = std::min(nearest, depthOf(list.samples[i]));
  };
  const int quarter = list.n / 4;
  for (int i = 0; i < quarter; ++i) {
    take(i);
    take(i + quarter);
    take(i + 2 * quarter);
    take(i + 3 * quarter);
  }
  for (int i = 4 * quarter; i < list.n; ++i) take(i);
}

// `to` becomes `from` where mask is all ones and is written as it was where mask is 0.
template <typename T>
void assignMasked(T mask, const unsigned char* from, unsigned char* to) {
  T value, old;
  std::memcpy(&value, from, sizeof value);
  std::memcpy(&old, to, sizeof old);
  value = static_cast<T>(old ^ ((old ^ value) & mask));
  std::memcpy(to, &value, sizeof value);
}

void takeColors(const SampleList& list, const AerialCells& cells) {
  for (int i = 0; i < list.n; ++i) {
    const std::uint16_t depth = depthOf(list.samples[i]);
    std::uint16_t& nearest = cells.nearest[list.cells[i]];
    const unsigned wins = 0U - static_cast<unsigned>(depth < nearest);
    nearest = std::min(nearest, depth);
    const unsigned char* pixel = list.color + kColorBytes * offsetOf(list.samples[i]);
    unsigned char* shown = shownAt(cells, list.cells[i]);
    assignMasked(static_cast<std::uint16_t>(wins), pixel, shown);
    assignMasked(static_cast<std::uint8_t>(wins), pixel + 2, shown + 2);
  }
}

} // namespace

void clearCells(const AerialCells& cells) {
  static_assert(kEmptyCell == 0xFFFF, "both bytes are the same");
  std::memset(cells.nearest, 0xFF, cells.count * sizeof *cells.nearest);
  if (cells.image != nullptr) std::memset(cells.image, 0, cells.count * kColorBytes);
}

void fetchCells(const SampleList& list, const AerialCells& cells) {
  const std::size_t cellBytes =
      sizeof *cells.nearest + (cells.image != nullptr ? kColorBytes : std::size_t{0});
  if (cells.count * cellBytes <= kCachedBytes) return;
  fetchForWriting(cells.nearest, sizeof *cells.nearest, list.cells, list.n);
  if (cells.image != nullptr) fetchForWriting(cells.image, kColorBytes, list.cells, list.n);
}

void takeCells(const SampleList& list, const AerialCells& cells) {
  if (cells.image == nullptr)
    takeDepths(list, cells);
  else
    takeColors(list, cells);
}

} // namespace velmorn
