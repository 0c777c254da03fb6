// The plain form of the binning, and the choice of a form.
#include "depth/background_bins.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace velmorn {
namespace {

std::uint32_t bitsOf(float value) {
  std::uint32_t bits;
  std::memcpy(&bits, &value, sizeof bits);
  return bits;
}

bool contains(const tagOzKRect2Df32& region, const tagOzKPoint3Df32& p) {
  return p.x >= region.x1 && p.x <= region.x2 && p.y >= region.y1 && p.y <= region.y2;
}

template <typename Better>
bool binWith(const tagOzKPoint3Df32* points, int n, const BinGrid& grid, std::uint32_t emptyMark,
             float* cells, Better better) {
  bool markIsUnused = true;
  for (int i = 0; i < n; ++i) {
    const tagOzKPoint3Df32& p = points[i];
    if (!contains(grid.region, p)) continue;
    const auto row = static_cast<std::int64_t>((p.y - grid.region.y1) / grid.cellSize);
    const auto column = static_cast<std::int64_t>((p.x - grid.region.x1) / grid.cellSize);
    float& cell = cells[row * grid.width + column];
    cell = bitsOf(cell) == emptyMark ? p.z : better(cell, p.z);
    markIsUnused &= bitsOf(p.z) != emptyMark;
  }
  return markIsUnused;
}

} // namespace

bool plainBinPoints(const tagOzKPoint3Df32* points, int n, const BinGrid& grid, bool keepHighest,
                    std::uint32_t emptyMark, float* cells) {
  const auto higher = [](float cell, float z) { return z > cell ? z : cell; };
  const auto lower = [](float cell, float z) { return z < cell ? z : cell; };
  return keepHighest ? binWith(points, n, grid, emptyMark, cells, higher)
                     : binWith(points, n, grid, emptyMark, cells, lower);
}

BinPoints binPointsForm(VectorLevel level) {
#if defined(VELMORN_X86_KERNELS)
  if (level == VectorLevel::kAvx512) return avx512BinPoints;
  if (level == VectorLevel::kAvx2) return avx2BinPoints;
#endif
  static_cast<void>(level);
  return plainBinPoints;
}

// Byte by byte from the top: of the bytes that can follow, the one with the fewest points. Fewer
// points than 2^32 leave fewer than 2^24 for the first byte, and so on down to none for the last.
std::uint32_t unusedBits(const tagOzKPoint3Df32* points, int n) {
  std::uint64_t upper = 0;
  for (int shift = 24; shift >= 0; shift -= 8) {
    std::uint32_t counts[256] = {};
    for (int i = 0; i < n; ++i) {
      const std::uint64_t bits = bitsOf(points[i].z);
      if (bits >> (shift + 8) == upper) ++counts[bits >> shift & 0xFF];
    }
    const auto byte = std::min_element(std::begin(counts), std::end(counts)) - std::begin(counts);
    upper = upper << 8 | static_cast<std::uint64_t>(byte);
  }
  return static_cast<std::uint32_t>(upper);
}

} // namespace velmorn
