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

constexpr int kDepths = kEmptyCell; // depths that a cell can have, 0 to 65534

// Cells that are listed at a time.
constexpr int kBlock = 2048;
static_assert(kBlock <= kMostListed);

// Calls `use` with the covered cells of every block: the list, its length, the block's first cell.
template <typename Use>
void forEachBlock(const unsigned short* depth, std::size_t cells, const Use& use) {
  static const AerialKernels& kernels = aerialKernels(supportedVectorLevel());
  Listed covered[kBlock + kListSlack];
  for (std::size_t first = 0; first < cells; first += kBlock) {
    const int size = static_cast<int>(std::min<std::size_t>(kBlock, cells - first));
    const std::size_t next = std::min(first + kBlock, cells);
    const std::size_t nextSize = std::min<std::size_t>(kBlock, cells - next);
    fetchForReading(depth + next, nextSize * sizeof *depth);
    use(covered, kernels.listCovered(depth + first, size, covered), first, size);
  }
}

// Neighbours often have the same depth; two tables in turn spare most of the waiting for a count
// that was just written.
struct Counts {
  std::uint32_t even[kDepths + 1], odd[kDepths + 1];
};

std::uint32_t count(const unsigned short* depth, std::size_t cells, Counts& counts) {
  std::uint32_t total = 0;
  forEachBlock(depth, cells, [&](const Listed* covered, int n, std::size_t, int) {
    for (int i = 0; i + 1 < n; i += 2) {
      ++counts.even[depthOf(covered[i])];
      ++counts.odd[depthOf(covered[i + 1])];
    }
    if (n % 2 != 0) ++counts.even[depthOf(covered[n - 1])];
    total += static_cast<std::uint32_t>(n);
  });
  return total;
}

// A cell's three bytes, lowest first; the fourth is 0.
std::uint32_t colour(std::uint32_t e) {
  return e | 2 * std::min(e, 255 - e) << 8 | (255 - e) << 16;
}

// The colour of every depth that occurs, in place of its even count.
void equalise(Counts& counts, std::uint32_t total) {
  std::uint32_t sum = 0;
  for (int i = 0; i < kDepths; ++i) {
    const std::uint32_t n = counts.even[i] + counts.odd[i];
    if (n == 0) continue;
    sum += n;
    counts.even[i] = colour(sum * 255U / total & 255U); // wraps around, hosts see it so
  }
}

// Four bytes at a time: the fourth is the next cell's first, which is 0 or written afterwards. The
// very last cell gets three.
void paint(const unsigned short* depth, std::size_t cells, const std::uint32_t* colors,
           unsigned char* output) {
  forEachBlock(depth, cells, [&](const Listed* covered, int n, std::size_t first, int size) {
    unsigned char* block = output + 3 * first;
    std::memset(block, 0, 3 * static_cast<std::size_t>(size));
    const bool hasLast = n > 0 && first + offsetOf(covered[n - 1]) + 1 == cells;
    const int inner = hasLast ? n - 1 : n;
    for (int i = 0; i < inner; ++i)
      std::memcpy(block + 3 * offsetOf(covered[i]), &colors[depthOf(covered[i])], 4);
    if (hasLast) std::memcpy(output + 3 * (cells - 1), &colors[depthOf(covered[n - 1])], 3);
  });
}

} // namespace

int renderDepthFalseColor(const unsigned short* depth, int width, int height,
                          unsigned char* output) {
  const std::unique_ptr<Counts> counts(new (std::nothrow) Counts());
  if (!counts) return kOzkComputationFailed;
  const std::size_t cells = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
  const std::uint32_t total = count(depth, cells, *counts);
  if (total > 0) equalise(*counts, total);
  paint(depth, cells, counts->even, output);
  return kOzkSuccess;
}

} // namespace velmorn
