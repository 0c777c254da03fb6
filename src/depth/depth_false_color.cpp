// Depths as colours.
#include "depth/depth_false_color.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <new>

#include "depth/aerial_kernels.h"
#include "depth/aerial_prefetch.h"
#include "velmorn64.h"

namespace velmorn {
namespace {

constexpr std::size_t kCellBytes = 3;

// Cells that are listed at a time. Where clearing them is work for the memory, long stretches of it
// take less time.
constexpr int kMostInBlock = 8192;
static_assert(kMostInBlock <= kMostListed);
std::size_t blockSize(std::size_t cells) {
  constexpr std::size_t kCachedCells = std::size_t{1} << 20;
  return cells <= kCachedCells ? 2048 : kMostInBlock;
}

// Until it is painted, the output holds what was found out about a block.
struct Block {
  const unsigned short* depth;
  int size, nextSize; // 0 after the last one
  unsigned char* output;
};

template <typename Use>
void forEachBlock(const unsigned short* depth, std::size_t cells, unsigned char* output,
                  const Use& use) {
  const std::size_t most = blockSize(cells);
  for (std::size_t first = 0; first < cells; first += most) {
    const std::size_t size = std::min(most, cells - first);
    const std::size_t nextSize = std::min(most, cells - first - size);
    use(Block{depth + first, static_cast<int>(size), static_cast<int>(nextSize),
              output + kCellBytes * first});
  }
}

// A block's covered cells.
struct Covered {
  int n = 0;
  Listed cells[kMostInBlock + kListSlack];
};

// In the output: the length of the block's list, then the list. Where most cells are covered it has
// no room.
using KeptLength = std::uint16_t;
static_assert(sizeof(KeptLength) <= kCellBytes, "fits into the smallest block");
constexpr KeptLength kNotKept = 0xFFFF;

void keep(const Covered& covered, const Block& block) {
  const std::size_t bytes = static_cast<std::size_t>(covered.n) * sizeof(Listed);
  const bool fits = sizeof(KeptLength) + bytes <= kCellBytes * static_cast<std::size_t>(block.size);
  const KeptLength length = fits ? static_cast<KeptLength>(covered.n) : kNotKept;
  std::memcpy(block.output, &length, sizeof length);
  if (fits) std::memcpy(block.output + sizeof length, covered.cells, bytes);
}

// False when it was not kept.
bool findKept(const Block& block, Covered& covered) {
  KeptLength length;
  std::memcpy(&length, block.output, sizeof length);
  if (length == kNotKept) return false;
  covered.n = length;
  std::memcpy(covered.cells, block.output + sizeof length, length * sizeof(Listed));
  return true;
}

void use(DepthCounts& counts, int below) {
  if (below <= counts.depths) return;
  std::fill(counts.even + counts.depths, counts.even + below, 0U);
  std::fill(counts.odd + counts.depths, counts.odd + below, 0U);
  counts.depths = below;
}

void countCells(const Covered& covered, DepthCounts& counts) {
  const int n = covered.n;
  for (int i = 0; i + 1 < n; i += 2) {
    ++counts.even[depthOf(covered.cells[i])];
    ++counts.odd[depthOf(covered.cells[i + 1])];
  }
  if (n % 2 != 0) ++counts.even[depthOf(covered.cells[n - 1])];
}

// Returns the number of covered cells.
std::uint32_t count(const unsigned short* depth, std::size_t cells, unsigned char* output,
                    DepthCounts& counts) {
  static const AerialKernels& kernels = aerialKernels(supportedVectorLevel());
  std::uint32_t total = 0;
  Covered covered;
  forEachBlock(depth, cells, output, [&](const Block& block) {
    fetchForReading(block.depth + block.size,
                    static_cast<std::size_t>(block.nextSize) * sizeof *block.depth);
    const CoveredCells found = kernels.listCovered(block.depth, block.size, covered.cells);
    covered.n = found.n;
    use(counts, found.depthBits + 1); // not below any of the depths, less than twice the largest
    countCells(covered, counts);
    keep(covered, block);
    total += static_cast<std::uint32_t>(covered.n);
  });
  return total;
}

// A cell's three bytes, lowest first; the fourth is 0.
std::uint32_t colour(std::uint32_t e) {
  return e | 2 * std::min(e, 255 - e) << 8 | (255 - e) << 16;
}

// The colour of every depth that occurs, in place of its even count, and of empty cells.
void equalise(DepthCounts& counts, std::uint32_t total) {
  std::uint32_t sum = 0;
  for (int i = 0; i < counts.depths; ++i) {
    const std::uint32_t n = counts.even[i] + counts.odd[i];
    if (n == 0) continue;
    sum += n;
    counts.even[i] = colour(sum * 255U / total & 255U); // wraps around, hosts see it so
  }
  counts.even[kEmptyCell] = 0;
}

// Cells are painted four bytes at a time: the fourth is the next cell's first, which is 0 or
// written afterwards. A block's last cell gets three.

void paintCovered(const Covered& covered, const std::uint32_t* colors, const Block& block) {
  std::memset(block.output, 0, kCellBytes * static_cast<std::size_t>(block.size));
  const auto cellAt = [&](int i) { return block.output + kCellBytes * offsetOf(covered.cells[i]); };
  const auto colorAt = [&](int i) { return &colors[depthOf(covered.cells[i])]; };
  for (int i = 0; i < covered.n - 1; ++i) std::memcpy(cellAt(i), colorAt(i), kCellBytes + 1);
  if (covered.n > 0) std::memcpy(cellAt(covered.n - 1), colorAt(covered.n - 1), kCellBytes);
}

void paintAll(const std::uint32_t* colors, const Block& block) {
  const int last = block.size - 1;
  unsigned char* cell = block.output;
  for (int i = 0; i < last; ++i, cell += kCellBytes)
    std::memcpy(cell, &colors[block.depth[i]], kCellBytes + 1);
  std::memcpy(cell, &colors[block.depth[last]], kCellBytes);
}

void paint(const unsigned short* depth, std::size_t cells, const std::uint32_t* colors,
           unsigned char* output) {
  Covered covered;
  forEachBlock(depth, cells, output, [&](const Block& block) {
    if (findKept(block, covered))
      paintCovered(covered, colors, block);
    else
      paintAll(colors, block);
  });
}

} // namespace

int renderDepthFalseColor(const unsigned short* depth, int width, int height,
                          unsigned char* output) {
  const std::unique_ptr<DepthCounts> counts(new (std::nothrow) DepthCounts);
  if (!counts) return kOzkComputationFailed;
  renderDepthFalseColor(depth, width, height, output, *counts);
  return kOzkSuccess;
}

void renderDepthFalseColor(const unsigned short* depth, int width, int height,
                           unsigned char* output, DepthCounts& counts) {
  const std::size_t cells = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
  counts.depths = 0;
  const std::uint32_t total = count(depth, cells, output, counts);
  equalise(counts, total);
  paint(depth, cells, counts.even, output);
}

} // namespace velmorn
