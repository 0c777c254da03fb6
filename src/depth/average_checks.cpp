// What the two averaging functions ask of the images that they are given.
#include "depth/average_checks.h"

#include "foundation/log.h"

namespace velmorn {
namespace {

int checkLaterImage(const tagOzKImage& image, const tagOzKImage& first) {
  if (image.width != first.width || image.height != first.height) {
    writeLog(kLogPath, "image size error\n");
    return kOzkBadAverageInput;
  }
  if (image.dataType != first.dataType || image.type != first.type) {
    writeLog(kLogPath, "image type or dataType error\n");
    return kOzkBadAverageInput;
  }
  return checkPixels(image);
}

} // namespace

std::size_t pixelCount(const tagOzKImage& image) {
  return static_cast<std::size_t>(image.width) * image.height;
}

int checkPixels(const tagOzKImage& image) {
  return image.data == nullptr && pixelCount(image) != 0 ? kOzkNullPointer : kOzkSuccess;
}

int checkLaterImages(const tagOzKImage* images, int count) {
  for (int i = 1; i < count; ++i) {
    const int status = checkLaterImage(images[i], images[0]);
    if (status != kOzkSuccess) return status;
  }
  return kOzkSuccess;
}

} // namespace velmorn
