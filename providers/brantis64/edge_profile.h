// The brightness across a blurred edge.
#ifndef VELMORN64_PROVIDERS_BRANTIS64_EDGE_PROFILE_H
#define VELMORN64_PROVIDERS_BRANTIS64_EDGE_PROFILE_H

#include <cmath>

namespace velmorn::brantis {

// Stands for erf(t / sqrt 2), t in blur widths: -1 to 1, off by less than 0.0015. An odd polynomial
// up to kProfileEnd, where it is 1 and level: loops over it run in vectors.
constexpr float kProfileEnd = 3.2F;

struct EdgeProfile {
  float value;
  float slope; // per blur width
};

inline EdgeProfile edgeProfile(float t) {
  constexpr float k1 = 2.5530968F, k3 = -4.3366840F, k5 = 6.3827968F, k7 = -6.5138836F,
                  k9 = 3.9606033F, k11 = -1.0459339F;
  constexpr float kScale = 1 / kProfileEnd;
  // Held to -1 to 1 without a comparison, which would keep loops from running in vectors.
  const float wide = t * kScale;
  const float u = 0.5F * (std::fabs(wide + 1) - std::fabs(wide - 1));
  const float s = u * u;
  const float value = u * (k1 + s * (k3 + s * (k5 + s * (k7 + s * (k9 + s * k11)))));
  const float slope =
      kScale * (k1 + s * (3 * k3 + s * (5 * k5 + s * (7 * k7 + s * (9 * k9 + s * (11 * k11))))));
  return {value, slope};
}

} // namespace velmorn::brantis

#endif // VELMORN64_PROVIDERS_BRANTIS64_EDGE_PROFILE_H
