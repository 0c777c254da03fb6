#include "depth/plain_average.h"

#include <cstdint>
#include <vector>

namespace velmorn {

void plainAverageDepth(const tagOzKImage* images, int count, std::size_t size,
                       unsigned short* average) {
  std::vector<float> sums(size, 0.0F);
  std::vector<std::uint32_t> counts(size, 0);
  for (int image = 0; image < count; ++image) {
    const auto* samples = static_cast<const unsigned short*>(images[image].data);
    for (std::size_t i = 0; i < size; ++i) {
      sums[i] += static_cast<float>(samples[i]);
      if (samples[i] > 0) ++counts[i];
    }
  }
  for (std::size_t i = 0; i < size; ++i) {
    average[i] = 0;
    if (counts[i] == 0) continue;
    const int mean = static_cast<int>(sums[i] / static_cast<float>(counts[i]));
    average[i] = static_cast<unsigned short>(mean); // the low 16 bits of what rounding made too big
  }
}

void plainAverageBytes(const tagOzKImage* images, int count, std::size_t size,
                       unsigned char* average) {
  std::vector<float> sums(size, 0.0F);
  for (int image = 0; image < count; ++image) {
    const auto* samples = static_cast<const unsigned char*>(images[image].data);
    for (std::size_t i = 0; i < size; ++i) sums[i] += static_cast<float>(samples[i]);
  }
  for (std::size_t i = 0; i < size; ++i) {
    const int mean = static_cast<int>(sums[i] / static_cast<float>(count));
    average[i] = static_cast<unsigned char>(mean); // the low 8 bits
  }
}

} // namespace velmorn
