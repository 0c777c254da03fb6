// Point clouds of a plane with outliers.
#ifndef VELMORN64_TESTS_GEOMETRY_PLANE_CLOUDS_H
#define VELMORN64_TESTS_GEOMETRY_PLANE_CLOUDS_H

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

#include "velmorn64.h"

namespace velmorn {

// z = 500 + 0.3 x - 0.1 y in camera coordinates.
struct PlaneCloud {
  int n = 1000;
  double outlierRatio = 0;
  float noise = 0.1F;  // length unit, along z
  float step = 0;      // distance of the grid that z is rounded to; 0: none
  bool raster = false; // points row by row; otherwise scattered
  unsigned seed = 1;

  std::vector<tagOzKPoint3Df32> points() const {
    std::mt19937 random(seed);
    std::uniform_real_distribution<float> place(-100, 100), shake(-noise, noise), share(0, 1);
    const int width = std::max(1, static_cast<int>(std::sqrt(n)));
    std::vector<tagOzKPoint3Df32> cloud;
    for (int i = 0; i < n; ++i) {
      tagOzKPoint3Df32 p{place(random), place(random), 0};
      if (raster) p.x = static_cast<float>(i % width), p.y = static_cast<float>(i / width);
      p.z = 500.0F + 0.3F * p.x - 0.1F * p.y + shake(random);
      if (step > 0) p.z = step * std::round(p.z / step);
      if (static_cast<double>(share(random)) < outlierRatio) p.z += 2.0F * place(random);
      cloud.push_back(p);
    }
    return cloud;
  }
};

} // namespace velmorn

#endif // VELMORN64_TESTS_GEOMETRY_PLANE_CLOUDS_H
