#include "depth/plain_depth_background.h"

#include <algorithm>
#include <cstddef>

namespace velmorn {
namespace {

int cellOf(float at, float from, float cellSize) {
  return static_cast<int>((at - from) / cellSize);
}

} // namespace

PlainBackground plainBinnedCells(const std::vector<tagOzKPoint3Df32>& points, float cellSize,
                                 const tagOzKRect2Df32& region, bool keepHighest) {
  PlainBackground b;
  b.width = cellOf(region.x2, region.x1, cellSize) + 1;
  b.height = cellOf(region.y2, region.y1, cellSize) + 1;
  b.cells.assign(static_cast<std::size_t>(b.width) * static_cast<std::size_t>(b.height), 0);
  b.filled.assign(b.cells.size(), 0);
  for (const tagOzKPoint3Df32& p : points) {
    if (!(region.x1 <= p.x && p.x <= region.x2 && region.y1 <= p.y && p.y <= region.y2)) continue;
    const int row = cellOf(p.y, region.y1, cellSize), column = cellOf(p.x, region.x1, cellSize);
    const std::size_t cell = static_cast<std::size_t>(row * b.width + column);
    if (!b.filled[cell]) {
      b.cells[cell] = p.z;
      b.filled[cell] = 1;
    } else if (keepHighest) {
      b.cells[cell] = std::max(b.cells[cell], p.z);
    } else {
      b.cells[cell] = std::min(b.cells[cell], p.z);
    }
  }
  return b;
}

void plainFillSweeps(PlainBackground& b) {
  const int width = b.width, height = b.height;
  std::vector<std::uint8_t> sweep(b.cells.size(), 0);
  std::size_t filledCells = 0;
  while (filledCells != b.cells.size()) {
    for (int row = 0; row < height; ++row) {
      for (int column = 0; column < width; ++column) {
        const std::size_t cell = static_cast<std::size_t>(row * width + column);
        if (!b.filled[cell]) continue;
        const auto push = [&](int toRow, int toColumn) {
          if (toRow < 0 || toRow >= height || toColumn < 0 || toColumn >= width) return;
          const std::size_t to = static_cast<std::size_t>(toRow * width + toColumn);
          if (b.filled[to]) return;
          b.cells[to] = b.cells[cell];
          sweep[to] = 1;
        };
        push(row - 1, column);
        push(row + 1, column);
        push(row, column - 1);
        push(row, column + 1);
      }
    }
    filledCells = 0;
    for (std::size_t cell = 0; cell < b.cells.size(); ++cell) {
      if (sweep[cell]) b.filled[cell] = 1;
      filledCells += b.filled[cell];
    }
  }
}

} // namespace velmorn
