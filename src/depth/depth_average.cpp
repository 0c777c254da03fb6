// The mean of a burst of depth images, pixel by pixel, without the samples that are missing.
#include <algorithm>
#include <cstddef>
#include <cstring>

#include "depth/average_checks.h"
#include "depth/average_kernels.h"
#include "foundation/boundary.h"

namespace velmorn {
namespace {

int checkFirstImage(const tagOzKImage& image) {
  if (image.type != kOzkImageOneChannel) return kOzkBadImageType;
  if (image.dataType != kOzkSample16U) return kOzkBadDataType;
  return checkPixels(image);
}

int averageDepth(const tagOzKImage* images, int count, unsigned short* average) {
  if (images == nullptr || count < 1 || average == nullptr) return kOzkNullPointer;
  const int first = checkFirstImage(images[0]);
  if (first != kOzkSuccess) return first;

  const std::size_t samples = pixelCount(images[0]);
  if (count == 1) {
    if (samples != 0) std::memmove(average, images[0].data, samples * sizeof *average);
    return kOzkSuccess;
  }

  const int others = checkLaterImages(images, count);
  if (others != kOzkSuccess) {
    std::fill_n(average, samples, static_cast<unsigned short>(0)); // hosts find no stale average
    return others;
  }
  static const AverageKernels& kernels = averageKernels(supportedVectorLevel());
  kernels.depth(images, count, 0, samples, average);
  return kOzkSuccess;
}

} // namespace
} // namespace velmorn

int ozkCalAverageDepthImage(tagOzKImage* images, int count, unsigned short* average) {
  return velmorn::guarded([&] { return velmorn::averageDepth(images, count, average); });
}
