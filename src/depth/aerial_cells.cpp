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

// Cells that are cleared together, 16 or 40 KiB.
constexpr std::size_t kPiece = 8192;

bool isCached(const AerialCells& cells) {
  const std::size_t cellBytes =
      sizeof *cells.nearest + (cells.image != nullptr ? kColorBytes : std::size_t{0});
  return cells.count * cellBytes <= kCachedBytes;
}

unsigned char* shownAt(const AerialCells& cells, std::int32_t cell) {
  return cells.image + kColorBytes * static_cast<std::size_t>(cell);
}

// Written without branches, but for sparse cells: which sample wins is as good as random.

// What is smallest does not depend on the order. Samples close to each other often share a cell
// and would wait for each other: the quarters of a list take turns.
template <typename Take>
void takeInTurns(int n, const Take& take) {
  const int quarter = n / 4;
  for (int i = 0; i < quarter; ++i) {
    take(i);
    take(i + quarter);
    take(i + 2 * quarter);
    take(i + 3 * quarter);
  }
  for (int i = 4 * quarter; i < n; ++i) take(i);
}

void takeDepths(const SampleList& list, const AerialCells& cells) {
  takeInTurns(list.n, [&](int i) {
    std::uint16_t& nearest = cells.nearest[list.cells[i]];
    nearest = std::min(nearest, depthOf(list.samples[i]));
  });
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

void takeSparseColors(const SampleList& list, const AerialCells& cells) {
  for (int i = 0; i < list.n; ++i) {
    const std::uint16_t depth = depthOf(list.samples[i]);
    std::uint16_t& nearest = cells.nearest[list.cells[i]];
    if (depth >= nearest) continue;
    nearest = depth;
    std::memcpy(shownAt(cells, list.cells[i]), list.color + kColorBytes * offsetOf(list.samples[i]),
                kColorBytes);
  }
}

} // namespace

CellClearing::CellClearing(const AerialCells& cells, const AerialKernels& kernels)
    : cells_(cells), findRange_(kernels.findRange) {
  if (isCached(cells)) extend(0, cells.count);
}

void CellClearing::clearFor(const SampleList& list) {
  if (list.n == 0 || end_ - first_ == cells_.count) return;
  const CellRange range = findRange_(list.cells, list.n);
  const std::size_t first = static_cast<std::size_t>(range.first) / kPiece * kPiece;
  const std::size_t end = (static_cast<std::size_t>(range.last) / kPiece + 1) * kPiece;
  extend(first, std::min(end, cells_.count));
}

void CellClearing::clearRest() { extend(0, cells_.count); }

void CellClearing::extend(std::size_t first, std::size_t end) {
  if (first_ == end_) first_ = end_ = first;
  if (first < first_) {
    clear(first, first_);
    first_ = first;
  }
  if (end > end_) {
    clear(end_, end);
    end_ = end;
  }
}

void CellClearing::clear(std::size_t first, std::size_t end) {
  static_assert(kEmptyCell == 0xFFFF, "both bytes are the same");
  const std::size_t n = end - first;
  std::memset(cells_.nearest + first, 0xFF, n * sizeof *cells_.nearest);
  if (cells_.image != nullptr) std::memset(cells_.image + kColorBytes * first, 0, kColorBytes * n);
}

void fetchCells(const SampleList& list, const AerialCells& cells) {
  if (isCached(cells)) return;
  fetchForWriting(cells.nearest, sizeof *cells.nearest, list.cells, list.n);
  if (cells.image != nullptr) fetchForWriting(cells.image, kColorBytes, list.cells, list.n);
}

void takeCells(const SampleList& list, const AerialCells& cells) {
  if (cells.image == nullptr)
    takeDepths(list, cells);
  else if (cells.isSparse)
    takeSparseColors(list, cells);
  else
    takeColors(list, cells);
}

void takeKeys(const KeyList& list, SampleKey* cells) {
  takeInTurns(list.n, [&](int i) {
    SampleKey& nearest = cells[list.cells[i]];
    nearest = std::min(nearest, list.keys[i]);
  });
}

} // namespace velmorn
