// Points and grids for the depth background's tests and benchmark.
#ifndef VELMORN64_TESTS_DEPTH_BACKGROUND_SCENES_H
#define VELMORN64_TESTS_DEPTH_BACKGROUND_SCENES_H

#include <cstddef>
#include <cstdint>
#include <random>
#include <vector>

#include "velmorn64.h"

namespace velmorn {

// n points, evenly spread over width x height cells of size 1 that start at (0, 0), and over a
// `margin` outside on every side.
inline std::vector<tagOzKPoint3Df32> scatteredPoints(int n, int width, int height, float margin,
                                                     std::uint64_t seed) {
  std::mt19937_64 random(seed);
  std::uniform_real_distribution<float> x(-margin, static_cast<float>(width) - 1 + margin);
  std::uniform_real_distribution<float> y(-margin, static_cast<float>(height) - 1 + margin);
  std::uniform_real_distribution<float> z(-50, 50);
  std::vector<tagOzKPoint3Df32> points(static_cast<std::size_t>(n));
  for (tagOzKPoint3Df32& p : points) p = {x(random), y(random), z(random)};
  return points;
}

// The region of such a grid.
inline tagOzKRect2Df32 regionOf(int width, int height) {
  return {0, 0, static_cast<float>(width - 1), static_cast<float>(height - 1)};
}

} // namespace velmorn

#endif // VELMORN64_TESTS_DEPTH_BACKGROUND_SCENES_H
