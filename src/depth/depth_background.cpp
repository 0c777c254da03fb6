// Turns the points of an empty scene into a height map without gaps.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <new>
#include <vector>

#include "depth/grid_size.h"
#include "foundation/boundary.h"
#include "velmorn64.h"

namespace velmorn {
namespace {

struct Grid {
  std::size_t width, height;
};

bool contains(const tagOzKRect2Df32& region, const tagOzKPoint3Df32& p) {
  return p.x >= region.x1 && p.x <= region.x2 && p.y >= region.y1 && p.y <= region.y2;
}

void binPoints(const tagOzKPoint3Df32* points, int pointCount, float cellSize,
               const tagOzKRect2Df32& region, bool keepHighest, const Grid& grid, float* background,
               std::uint8_t* filled) {
  for (int i = 0; i < pointCount; ++i) {
    const tagOzKPoint3Df32& p = points[i];
    if (!contains(region, p)) continue;
    const auto row = static_cast<std::size_t>((p.y - region.y1) / cellSize);
    const auto column = static_cast<std::size_t>((p.x - region.x1) / cellSize);
    const std::size_t cell = row * grid.width + column;
    float& value = background[cell];
    if (!filled[cell])
      value = p.z;
    else
      value = keepHighest ? std::max(value, p.z) : std::min(value, p.z);
    filled[cell] = 1;
  }
}

// Values spread by one cell per sweep.
void fillGaps(const Grid& grid, float* background, std::vector<std::uint8_t>& filled,
              std::vector<std::uint8_t>& reached) {
  const std::size_t width = grid.width, cells = grid.width * grid.height;
  const auto push = [&](std::size_t to, float value) {
    if (filled[to]) return;
    background[to] = value;
    reached[to] = 1;
  };
  while (std::find(filled.begin(), filled.end(), 0) != filled.end()) {
    for (std::size_t cell = 0; cell < cells; ++cell) {
      if (!filled[cell]) continue;
      const std::size_t column = cell % width;
      if (cell >= width) push(cell - width, background[cell]);
      if (cell + width < cells) push(cell + width, background[cell]);
      if (column > 0) push(cell - 1, background[cell]);
      if (column + 1 < width) push(cell + 1, background[cell]);
    }
    for (std::size_t cell = 0; cell < cells; ++cell) filled[cell] |= reached[cell];
  }
}

int bulidBackground(const tagOzKPoint3Df32* points, int pointCount, float cellSize,
                    const tagOzKRect2Df32* region, float* background, int* gridWidth,
                    int* gridHeight, bool keepHighest, int minPointCount, int maxGridSize) {
  if (minPointCount > pointCount) return kOzkTooFewPoints;
  if (!region || !background || !gridWidth || !gridHeight || (!points && pointCount > 0))
    return kOzkNullPointer;
  const double width = cellsAlong(region->x1, region->x2, cellSize);
  const double height = cellsAlong(region->y1, region->y2, cellSize);
  if (width > maxGridSize || height > maxGridSize) return kOzkGridTooLarge;
  // Written so that NaN fails too.
  if (!(width >= 1) || !(height >= 1)) return kOzkGridEmpty;
  *gridWidth = static_cast<int>(width);
  *gridHeight = static_cast<int>(height);

  const Grid grid{static_cast<std::size_t>(width), static_cast<std::size_t>(height)};
  const std::size_t cells = grid.width * grid.height;
  try {
    std::vector<std::uint8_t> filled(cells), reached(cells);
    std::fill_n(background, cells, 0.0F);
    binPoints(points, pointCount, cellSize, *region, keepHighest, grid, background, filled.data());
    if (std::find(filled.begin(), filled.end(), 1) == filled.end()) return kOzkNoPointInRegion;
    fillGaps(grid, background, filled, reached);
  } catch (const std::bad_alloc&) {
    return kOzkNoGridMemory;
  }
  return kOzkSuccess;
}

} // namespace
} // namespace velmorn

int bulidDepthBackgroundByPointCloud(tagOzKPoint3Df32* points, int pointCount, float cellSize,
                                     tagOzKRect2Df32* region, float* background, int* gridWidth,
                                     int* gridHeight, int keepHighest, int minPointCount,
                                     int maxGridSize) {
  return velmorn::guarded([&] {
    return velmorn::bulidBackground(points, pointCount, cellSize, region, background, gridWidth,
                                    gridHeight, keepHighest != 0, minPointCount, maxGridSize);
  });
}
