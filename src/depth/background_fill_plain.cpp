// The plain form of the fill.
#include <cstring>

#include "depth/background_fill.h"

namespace velmorn {
namespace {

constexpr int kNoSeed = -1;

bool isSeed(float cell, std::uint32_t emptyMark) {
  std::uint32_t bits;
  std::memcpy(&bits, &cell, sizeof bits);
  return bits != emptyMark;
}

bool hasSeed(const float* cells, int width, std::uint32_t emptyMark) {
  for (int column = 0; column < width; ++column)
    if (isSeed(cells[column], emptyMark)) return true;
  return false;
}

// nextSeed[column] becomes the first seed at or right of the column, kNoSeed for none.
template <typename IsSeed>
void findNextSeeds(int width, IsSeed isSeedAt, int* nextSeed) {
  int next = kNoSeed;
  for (int column = width - 1; column >= 0; --column) {
    if (isSeedAt(column)) next = column;
    nextSeed[column] = next;
  }
}

// The nearest seed of a column's own row, the right one of two, as a key and the seed's column. At
// least one of both is a seed.
template <typename Key>
struct Nearest {
  Key key;
  int column;
};

template <typename Key>
Nearest<Key> nearest(int column, int leftSeed, int rightSeed) {
  if (leftSeed == column) return {1, column};
  const Key left = 2 * static_cast<Key>(column - leftSeed) + 1;
  const Key right = 2 * static_cast<Key>(rightSeed - column);
  if (rightSeed == kNoSeed || (leftSeed != kNoSeed && left < right)) return {left, leftSeed};
  return {right, rightSeed};
}

template <typename Steps, typename Key>
void fillFromBelow(const FillRow<Steps, Key>& row, std::uint32_t emptyMark) {
  const auto isSeedAt = [&](int column) { return isSeed(row.cells[column], emptyMark); };
  findNextSeeds(row.width, isSeedAt, row.nextSeed);
  int leftSeed = kNoSeed;
  for (int column = 0; column < row.width; ++column) {
    if (row.nextSeed[column] == column) leftSeed = column;
    const auto own = nearest<Key>(column, leftSeed, row.nextSeed[column]);
    const Key ownSteps = own.key / 2;
    const Key below = static_cast<Key>(row.belowSteps[column]) + row.belowGap;
    const bool takesBelow = below <= ownSteps;
    row.steps[column] = static_cast<Steps>(takesBelow ? below : ownSteps);
    row.cells[column] = takesBelow ? row.belowCells[column] : row.cells[own.column];
  }
}

template <typename Steps, typename Key>
void writeCell(const FillRow<Steps, Key>& row, int column, Key aboveKey) {
  const Key below = static_cast<Key>(row.belowSteps[column]) + row.belowGap;
  row.cells[column] = 2 * below <= aboveKey ? row.belowCells[column] : row.aboveValues[column];
}

template <typename Steps, typename Key>
void fillFromAll(const FillRow<Steps, Key>& row) {
  findNextSeeds(
      row.width, [&](int column) { return row.steps[column] == 0; }, row.nextSeed);
  int leftSeed = kNoSeed;
  for (int column = 0; column < row.width; ++column) {
    if (row.nextSeed[column] == column) leftSeed = column;
    const auto own = nearest<Key>(column, leftSeed, row.nextSeed[column]);
    const Key above = row.aboveKeys[column] + 2 * row.aboveGap;
    row.aboveKeys[column] = own.key <= above ? own.key : above;
    if (own.key <= above) row.aboveValues[column] = row.cells[own.column];
    writeCell(row, column, row.aboveKeys[column]);
  }
}

template <typename Steps, typename Key>
void fillBetween(const FillRow<Steps, Key>& row) {
  for (int column = 0; column < row.width; ++column)
    writeCell(row, column, row.aboveKeys[column] + 2 * row.aboveGap);
}

} // namespace

const ShortFillKernels& plainShortFillKernels() {
  static const ShortFillKernels kernels{hasSeed, fillFromBelow, fillFromAll, fillBetween};
  return kernels;
}

const LongFillKernels& plainLongFillKernels() {
  static const LongFillKernels kernels{hasSeed, fillFromBelow, fillFromAll, fillBetween};
  return kernels;
}

} // namespace velmorn
