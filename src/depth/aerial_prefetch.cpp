// Memory asked for before it is needed.
#include "depth/aerial_prefetch.h"

namespace velmorn {

#if defined(__GNUC__)

void fetchForReading(const void* from, std::size_t bytes) {
  constexpr std::size_t kCacheLine = 64; // bytes
  for (std::size_t i = 0; i < bytes; i += kCacheLine)
    __builtin_prefetch(static_cast<const char*>(from) + i, 0);
}

void fetchForWriting(const void* array, std::size_t elementBytes, const std::int32_t* indices,
                     int n) {
  for (int i = 0; i < n; ++i)
    __builtin_prefetch(
        static_cast<const char*>(array) + elementBytes * static_cast<std::size_t>(indices[i]), 1);
}

#else

void fetchForReading(const void*, std::size_t) {}
void fetchForWriting(const void*, std::size_t, const std::int32_t*, int) {}

#endif

} // namespace velmorn
