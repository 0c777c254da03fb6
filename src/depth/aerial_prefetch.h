// Memory asked for before it is needed. Nothing depends on it but the time.
#ifndef VELMORN64_DEPTH_AERIAL_PREFETCH_H
#define VELMORN64_DEPTH_AERIAL_PREFETCH_H

#include <cstddef>
#include <cstdint>

namespace velmorn {

// In a file of their own: where g++ sees that a function has no effect, it drops the call.

// A stretch of memory that will be read.
void fetchForReading(const void* from, std::size_t bytes);

// Elements of elementBytes that will be written, at n indices of an array.
void fetchForWriting(const void* array, std::size_t elementBytes, const std::int32_t* indices,
                     int n);

} // namespace velmorn

#endif // VELMORN64_DEPTH_AERIAL_PREFETCH_H
