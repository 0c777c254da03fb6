// The mean of a burst of 8-bit images, sample by sample.
#include <algorithm>
#include <cstddef>
#include <cstring>

#include "depth/average_checks.h"
#include "depth/average_kernels.h"
#include "foundation/boundary.h"

namespace velmorn {
namespace {

int checkFirstImage(const tagOzKImage& image) {
  if (image.type != kOzkImageOneChannel && image.type != kOzkImageThreeChannels &&
      image.type != kOzkImageThreeChannelsSwapped)
    return kOzkBadImageType;
  if (image.dataType != kOzkSample8U) return kOzkBadDataType;
  return checkPixels(image);
}

std::size_t sampleCount(const tagOzKImage& image) {
  return pixelCount(image) * (image.type == kOzkImageOneChannel ? 1 : 3);
}

int averageImage(const tagOzKImage* images, int count, unsigned char* average) {
  if (images == nullptr || count < 1 || average == nullptr) return kOzkNullPointer;
  const int first = checkFirstImage(images[0]);
  if (first != kOzkSuccess) return first;

  const std::size_t samples = sampleCount(images[0]);
  if (count == 1) {
    if (samples != 0) std::memmove(average, images[0].data, samples);
    return kOzkSuccess;
  }

  const int others = checkLaterImages(images, count);
  if (others != kOzkSuccess) {
    std::fill_n(average, samples, static_cast<unsigned char>(0)); // hosts find no stale average
    return others;
  }
  static const AverageKernels& kernels = averageKernels(supportedVectorLevel());
  kernels.bytes(images, count, 0, samples, average);
  return kOzkSuccess;
}

} // namespace
} // namespace velmorn

int ozkCalAverageImage(tagOzKImage* images, int count, unsigned char* average) {
  return velmorn::guarded([&] { return velmorn::averageImage(images, count, average); });
}
