// The averages written down step by step: the yardstick for the bytes.
#ifndef VELMORN64_TESTS_DEPTH_PLAIN_AVERAGE_H
#define VELMORN64_TESTS_DEPTH_PLAIN_AVERAGE_H

#include <cstddef>

#include "velmorn64.h"

namespace velmorn {

// The first `size` samples of the average of `count` images that fit together.
void plainAverageDepth(const tagOzKImage* images, int count, std::size_t size,
                       unsigned short* average);
void plainAverageBytes(const tagOzKImage* images, int count, std::size_t size,
                       unsigned char* average);

} // namespace velmorn

#endif // VELMORN64_TESTS_DEPTH_PLAIN_AVERAGE_H
