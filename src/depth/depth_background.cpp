// Turns the points of an empty scene into a height map without gaps.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "depth/background_bins.h"
#include "depth/background_fill.h"
#include "depth/grid_size.h"
#include "foundation/boundary.h"
#include "velmorn64.h"

namespace velmorn {
namespace {

// Marks empty cells: a number that no scene has, about -6.7e30. Should a point have it all the
// same, another one is looked for.
constexpr std::uint32_t kUsualEmptyMark = 0xF2A9C35B;

struct Scene {
  const tagOzKPoint3Df32* points;
  int pointCount;
  BinGrid grid;
  int height;
  bool keepHighest;
};

std::size_t cellCount(const Scene& scene) {
  return static_cast<std::size_t>(scene.grid.width) * static_cast<std::size_t>(scene.height);
}

bool binScene(const Scene& scene, BinPoints binPoints, std::uint32_t emptyMark, float* background) {
  float mark;
  std::memcpy(&mark, &emptyMark, sizeof mark);
  std::fill_n(background, cellCount(scene), mark);
  return binPoints(scene.points, scene.pointCount, scene.grid, scene.keepHighest, emptyMark,
                   background);
}

template <typename Filler>
int fillScene(const Scene& scene, BinPoints binPoints, Filler filler, float* background) {
  if (!filler.ready()) return kOzkNoGridMemory;
  std::uint32_t emptyMark = kUsualEmptyMark;
  if (!binScene(scene, binPoints, emptyMark, background)) {
    emptyMark = unusedBits(scene.points, scene.pointCount);
    binScene(scene, binPoints, emptyMark, background);
  }
  if (filler.fill(background, emptyMark)) return kOzkSuccess;
  std::fill_n(background, cellCount(scene), 0.0F);
  return kOzkNoPointInRegion;
}

int bulidBackground(Scene scene, const tagOzKRect2Df32* region, float* background, int* gridWidth,
                    int* gridHeight, int minPointCount, int maxGridSize) {
  if (minPointCount > scene.pointCount) return kOzkTooFewPoints;
  if (!region || !background || !gridWidth || !gridHeight ||
      (!scene.points && scene.pointCount > 0))
    return kOzkNullPointer;
  const double width = cellsAlong(region->x1, region->x2, scene.grid.cellSize);
  const double height = cellsAlong(region->y1, region->y2, scene.grid.cellSize);
  if (width > maxGridSize || height > maxGridSize) return kOzkGridTooLarge;
  // Written so that NaN fails too.
  if (!(width >= 1) || !(height >= 1)) return kOzkGridEmpty;
  scene.grid.region = *region;
  scene.grid.width = *gridWidth = static_cast<int>(width);
  scene.height = *gridHeight = static_cast<int>(height);

  if (width + height > kMostShortSteps)
    return fillScene(scene, plainBinPoints,
                     LongGapFiller(scene.grid.width, scene.height, plainLongFillKernels()),
                     background);
  const VectorLevel level = supportedVectorLevel();
  return fillScene(scene, binPointsForm(level),
                   ShortGapFiller(scene.grid.width, scene.height, shortFillKernels(level)),
                   background);
}

} // namespace
} // namespace velmorn

int bulidDepthBackgroundByPointCloud(tagOzKPoint3Df32* points, int pointCount, float cellSize,
                                     tagOzKRect2Df32* region, float* background, int* gridWidth,
                                     int* gridHeight, int keepHighest, int minPointCount,
                                     int maxGridSize) {
  return velmorn::guarded([&] {
    const velmorn::Scene scene{points, pointCount, {{}, cellSize, 0}, 0, keepHighest != 0};
    return velmorn::bulidBackground(scene, region, background, gridWidth, gridHeight, minPointCount,
                                    maxGridSize);
  });
}
