// Depths as colours.
#include "depth/depth_false_color.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>

#include "velmorn64.h"

namespace velmorn {
namespace {

constexpr int kDepths = kEmptyCell; // depths that a cell can have, 0 to 65534

// e of every depth.
void equalise(const std::uint32_t* counts, std::uint32_t total, unsigned char* e) {
  std::uint32_t sum = 0;
  for (int i = 0; i < kDepths; ++i) {
    sum += counts[i];
    e[i] = static_cast<unsigned char>(sum * 255U / total); // wraps around, hosts see it so
  }
}

void colour(unsigned e, unsigned char* cell) {
  cell[0] = static_cast<unsigned char>(e);
  cell[1] = static_cast<unsigned char>(2 * std::min(e, 255 - e));
  cell[2] = static_cast<unsigned char>(255 - e);
}

} // namespace

int renderDepthFalseColor(const unsigned short* depth, int width, int height,
                          unsigned char* output) {
  const std::unique_ptr<std::uint32_t[]> counts(new (std::nothrow) std::uint32_t[kDepths]());
  const std::unique_ptr<unsigned char[]> e(new (std::nothrow) unsigned char[kDepths]);
  if (!counts || !e) return kOzkComputationFailed;

  const std::size_t cells = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
  std::uint32_t total = 0;
  for (std::size_t i = 0; i < cells; ++i) {
    if (depth[i] == kEmptyCell) continue;
    ++counts[depth[i]];
    ++total;
  }
  std::fill(output, output + 3 * cells, static_cast<unsigned char>(0));
  if (total == 0) return kOzkSuccess;

  equalise(counts.get(), total, e.get());
  for (std::size_t i = 0; i < cells; ++i)
    if (depth[i] != kEmptyCell) colour(e[depth[i]], output + 3 * i);
  return kOzkSuccess;
}

} // namespace velmorn
