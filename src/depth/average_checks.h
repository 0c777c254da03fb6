// What the two averaging functions ask of the images that they are given.
#ifndef VELMORN64_DEPTH_AVERAGE_CHECKS_H
#define VELMORN64_DEPTH_AVERAGE_CHECKS_H

#include <cstddef>

#include "velmorn64.h"

namespace velmorn {

// Pixels of an image.
std::size_t pixelCount(const tagOzKImage& image);

// kOzkNullPointer when the image has pixels but no data.
int checkPixels(const tagOzKImage& image);

// Compares images 1 .. count - 1, in their order, with the first one's size, sample type and type,
// and checks their data. The first that does not fit gives its message to the log and its status.
int checkLaterImages(const tagOzKImage* images, int count);

} // namespace velmorn

#endif // VELMORN64_DEPTH_AVERAGE_CHECKS_H
