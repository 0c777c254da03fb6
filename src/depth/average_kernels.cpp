// The plain form of the averages, and the choice of a form.
#include "depth/average_kernels.h"

#include <algorithm>
#include <cstdint>

#include "depth/average_reading.h"

namespace velmorn {
namespace {

// Samples whose sums are kept at a time, on the stack.
constexpr std::size_t kTile = 4096;

void averageDepthTile(const tagOzKImage* images, int count, std::size_t first, std::size_t size,
                      unsigned short* average) {
  float sums[kTile] = {};
  std::int32_t counts[kTile] = {};
  for (int image = 0; image < count; ++image) {
    const auto* samples = static_cast<const unsigned short*>(images[image].data) + first;
    for (std::size_t i = 0; i < size; ++i) {
      sums[i] += static_cast<float>(samples[i]);
      counts[i] += samples[i] > 0 ? 1 : 0;
    }
  }
  for (std::size_t i = 0; i < size; ++i) {
    // Without a sample the sum is 0; 0 / 1 is the 0 that the pixel keeps.
    const float mean = sums[i] / static_cast<float>(std::max(counts[i], 1));
    average[first + i] = static_cast<unsigned short>(static_cast<int>(mean));
  }
}

void averageBytesTile(const tagOzKImage* images, int count, std::size_t first, std::size_t size,
                      unsigned char* average) {
  float sums[kTile] = {};
  for (int image = 0; image < count; ++image) {
    const auto* samples = static_cast<const unsigned char*>(images[image].data) + first;
    for (std::size_t i = 0; i < size; ++i) sums[i] += static_cast<float>(samples[i]);
  }
  const auto divisor = static_cast<float>(count);
  for (std::size_t i = 0; i < size; ++i)
    average[first + i] = static_cast<unsigned char>(static_cast<int>(sums[i] / divisor));
}

void averageDepth(const tagOzKImage* images, int count, std::size_t first, std::size_t last,
                  unsigned short* average) {
  for (std::size_t i = first; i < last; i += kTile)
    averageDepthTile(images, count, i, std::min(kTile, last - i), average);
}

void averageBytes(const tagOzKImage* images, int count, std::size_t first, std::size_t last,
                  unsigned char* average) {
  for (std::size_t i = first; i < last; i += kTile)
    averageBytesTile(images, count, i, std::min(kTile, last - i), average);
}

} // namespace

const AverageKernels& plainAverageKernels() {
  static const AverageKernels kernels{averageDepth, averageBytes};
  return kernels;
}

WordDivisor wordDivisor(int divisor) {
  int bits = 0; // divisor <= 2^bits
  while ((1 << bits) < divisor) ++bits;
  const int multiplier = ((1 << bits) - divisor) * 65536 / divisor + 1;
  return {static_cast<unsigned short>(multiplier), std::min(bits, 1), std::max(bits - 1, 0)};
}

const AverageKernels& averageKernels(VectorLevel level) {
#if defined(VELMORN_X86_KERNELS)
  if (level == VectorLevel::kAvx512) return avx512AverageKernels();
  if (level == VectorLevel::kAvx2) return avx2AverageKernels();
#endif
  static_cast<void>(level);
  return plainAverageKernels();
}

} // namespace velmorn
