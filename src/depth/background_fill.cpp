// The passes over the rows, and the choice of a form.
#include "depth/background_fill.h"

#include <algorithm>
#include <limits>
#include <new>

namespace velmorn {
namespace {

// Above every key that a grid can have, with room for the gaps added to it.
template <typename Key>
constexpr Key kNothingAbove = std::numeric_limits<Key>::max() / 4;

} // namespace

const ShortFillKernels& shortFillKernels(VectorLevel level) {
#if defined(VELMORN_X86_KERNELS)
  if (level == VectorLevel::kAvx512) return avx512FillKernels();
  if (level == VectorLevel::kAvx2) return avx2FillKernels();
#endif
  static_cast<void>(level);
  return plainShortFillKernels();
}

template <typename Steps, typename Key>
GapFiller<Steps, Key>::GapFiller(int width, int height, const FillKernels<Steps, Key>& kernels)
    : width_(width), height_(height), kernels_(kernels) {
  constexpr std::size_t kLanes = kFillLanes;
  stride_ = (static_cast<std::size_t>(width) + kLanes - 1) / kLanes * kLanes;
  const std::size_t rows = static_cast<std::size_t>(height);
  try {
    steps_.reset(new Steps[(rows + 1) * stride_]);
    aboveKeys_.reset(new Key[stride_]);
    aboveValues_.reset(new float[stride_]);
    nextSeed_.reset(new int[stride_ + 1]);
    nextSeedRow_.reset(new int[rows]);
  } catch (const std::bad_alloc&) {
  }
}

template <typename Steps, typename Key>
bool GapFiller<Steps, Key>::ready() const {
  return nextSeedRow_ != nullptr; // the last one
}

template <typename Steps, typename Key>
bool GapFiller<Steps, Key>::fill(float* cells, std::uint32_t emptyMark) {
  const int firstSeedRow = fillUpward(cells, emptyMark);
  if (firstSeedRow == height_) return false;
  fillDownward(cells, firstSeedRow);
  return true;
}

// `below` is the next row with seeds, height_ for none.
template <typename Steps, typename Key>
FillRow<Steps, Key> GapFiller<Steps, Key>::rowAt(float* cells, int row, int upcoming,
                                                 int below) const {
  const auto at = [&](int r) { return static_cast<std::size_t>(r); };
  FillRow<Steps, Key> r;
  r.width = width_;
  r.cells = cells + at(row) * at(width_);
  r.upcoming = cells + at(upcoming) * at(width_);
  r.steps = steps_.get() + at(row) * stride_;
  // Nothing is taken from there when there is no such row; any memory will do.
  r.belowCells = below < height_ ? cells + at(below) * at(width_) : r.cells;
  r.belowSteps = steps_.get() + at(below) * stride_;
  r.belowGap = static_cast<Key>(below - row);
  r.aboveKeys = aboveKeys_.get();
  r.aboveValues = aboveValues_.get();
  r.aboveGap = 0;
  r.nextSeed = nextSeed_.get();
  return r;
}

// Returns the first row with seeds, height_ for none.
template <typename Steps, typename Key>
int GapFiller<Steps, Key>::fillUpward(float* cells, std::uint32_t emptyMark) {
  std::fill_n(steps_.get() + static_cast<std::size_t>(height_) * stride_, stride_,
              std::numeric_limits<Steps>::max());
  int below = height_;
  for (int row = height_ - 1; row >= 0; --row) {
    nextSeedRow_[static_cast<std::size_t>(row)] = below;
    const FillRow<Steps, Key> r = rowAt(cells, row, std::max(row - 1, 0), below);
    if (!kernels_.hasSeed(r.cells, width_, emptyMark)) continue;
    kernels_.fillFromBelow(r, emptyMark);
    below = row;
  }
  return below;
}

template <typename Steps, typename Key>
void GapFiller<Steps, Key>::fillDownward(float* cells, int firstSeedRow) {
  std::fill_n(aboveKeys_.get(), stride_, kNothingAbove<Key>);
  std::fill_n(aboveValues_.get(), stride_, 0.0F);
  int above = 0, nextWithSeeds = firstSeedRow;
  for (int row = 0; row < height_; ++row) {
    const int below = nextSeedRow_[static_cast<std::size_t>(row)];
    FillRow<Steps, Key> r = rowAt(cells, row, std::min(row + 1, height_ - 1), below);
    r.aboveGap = static_cast<Key>(row - above);
    if (row != nextWithSeeds) {
      kernels_.fillBetween(r);
      continue;
    }
    kernels_.fillFromAll(r);
    above = row;
    nextWithSeeds = below;
  }
}

template class GapFiller<std::uint16_t, std::int32_t>;
template class GapFiller<std::uint32_t, std::int64_t>;

} // namespace velmorn
