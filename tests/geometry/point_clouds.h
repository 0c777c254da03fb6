// Random point pairs for the rigid fit's tests and benchmark.
#ifndef VELMORN64_TESTS_GEOMETRY_POINT_CLOUDS_H
#define VELMORN64_TESTS_GEOMETRY_POINT_CLOUDS_H

#include <random>
#include <vector>

#include "velmorn64.h"

namespace velmorn {

struct PointPairs {
  std::vector<tagOzKPoint3Df32> a, b;
};

// n points within +-extent, turned by a right angle about z, shifted by (3, -20, 500) and shaken by
// +-noise: b = R a + t + noise.
inline PointPairs randomPairs(int n, unsigned seed, float extent = 500.0F, float noise = 0.05F) {
  std::mt19937 random(seed);
  std::uniform_real_distribution<float> place(-extent, extent), shake(-noise, noise);
  PointPairs pairs;
  for (int i = 0; i < n; ++i) {
    const tagOzKPoint3Df32 p{place(random), place(random), place(random)};
    pairs.a.push_back(p);
    pairs.b.push_back(
        {-p.y + 3.0F + shake(random), p.x - 20.0F + shake(random), p.z + 500.0F + shake(random)});
  }
  return pairs;
}

} // namespace velmorn

#endif // VELMORN64_TESTS_GEOMETRY_POINT_CLOUDS_H
