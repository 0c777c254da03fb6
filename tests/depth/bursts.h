// Bursts of images made up of random samples.
#ifndef VELMORN64_TESTS_DEPTH_BURSTS_H
#define VELMORN64_TESTS_DEPTH_BURSTS_H

#include <cstddef>
#include <cstdint>
#include <limits>
#include <random>
#include <vector>

#include "velmorn64.h"

namespace velmorn {

// Images with their records.
template <typename Sample>
struct Burst {
  std::vector<std::vector<Sample>> samples; // one list per image
  std::vector<tagOzKImage> images;

  int count() const { return static_cast<int>(images.size()); }
  std::size_t size() const { return samples[0].size(); } // samples per image
};

using DepthBurst = Burst<unsigned short>;
using ByteBurst = Burst<unsigned char>;

// The records of images whose samples are given; everything that is not to be read is not 0.
template <typename Sample>
Burst<Sample> burstOf(std::vector<std::vector<Sample>> samples, std::uint32_t type,
                      std::uint32_t width, std::uint32_t height) {
  Burst<Sample> burst{std::move(samples), {}};
  tagOzKImage image{type,    sizeof(Sample) == 2 ? kOzkSample16U : kOzkSample8U,
                    width,   height,
                    -7,      -8,
                    -9,      -10,
                    nullptr, {1, 2, 3}};
  for (std::vector<Sample>& list : burst.samples) {
    image.data = list.empty() ? nullptr : list.data();
    burst.images.push_back(image);
  }
  return burst;
}

// Samples between `least` and the largest, the given part of which is replaced by 0.
template <typename Sample>
Burst<Sample> randomBurst(int count, std::uint32_t type, std::uint32_t width, std::uint32_t height,
                          double zeroPart, unsigned seed, int least = 0) {
  std::mt19937 random(seed);
  std::uniform_int_distribution<int> value(least, std::numeric_limits<Sample>::max());
  std::bernoulli_distribution isZero(zeroPart);
  const std::size_t size =
      static_cast<std::size_t>(width) * height * (type == kOzkImageOneChannel ? 1 : 3);
  std::vector<std::vector<Sample>> samples(static_cast<std::size_t>(count));
  for (std::vector<Sample>& list : samples)
    for (std::size_t i = 0; i < size; ++i)
      list.push_back(static_cast<Sample>(isZero(random) ? 0 : value(random)));
  return burstOf(std::move(samples), type, width, height);
}

inline DepthBurst randomDepthBurst(int count, std::uint32_t width, std::uint32_t height,
                                   double zeroPart, unsigned seed, int least = 0) {
  return randomBurst<unsigned short>(count, kOzkImageOneChannel, width, height, zeroPart, seed,
                                     least);
}

inline ByteBurst randomColourBurst(int count, std::uint32_t width, std::uint32_t height,
                                   unsigned seed, int least = 0) {
  return randomBurst<unsigned char>(count, kOzkImageThreeChannels, width, height, 0.1, seed, least);
}

} // namespace velmorn

#endif // VELMORN64_TESTS_DEPTH_BURSTS_H
