// Random numbers of simulations.
#ifndef VELMORN64_TOOLS_SIMULATE_RANDOM_H
#define VELMORN64_TOOLS_SIMULATE_RANDOM_H

#include <cstddef>
#include <cstdint>

namespace velmorn::tool {

enum class RandomUse { kCameras, kPlainShots, kCodeShots, kPlainImage, kCodeImage, kDepth, kColor };

// A start for a generator of random numbers: another one for each use, and for each camera and
// image of it, so that more images of one kind do not change the others.
std::uint64_t randomStart(int seed, RandomUse use, std::size_t camera = 0, std::size_t image = 0);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_SIMULATE_RANDOM_H
