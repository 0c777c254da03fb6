// Random numbers of simulations.
#include "velmorn/simulate_random.h"

namespace velmorn::tool {
namespace {

// SplitMix64 (Steele, Lea, Flood 2014): spreads neighbouring numbers over all 64 bits.
std::uint64_t mixed(std::uint64_t number) {
  number += 0x9e3779b97f4a7c15U;
  number = (number ^ (number >> 30)) * 0xbf58476d1ce4e5b9U;
  number = (number ^ (number >> 27)) * 0x94d049bb133111ebU;
  return number ^ (number >> 31);
}

} // namespace

std::uint64_t randomStart(int seed, RandomUse use, std::size_t camera, std::size_t image) {
  std::uint64_t start = mixed(static_cast<std::uint64_t>(seed));
  start = mixed(start ^ static_cast<std::uint64_t>(use));
  start = mixed(start ^ camera);
  return mixed(start ^ image);
}

} // namespace velmorn::tool
