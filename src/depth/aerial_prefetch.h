// Memory asked for before it is needed. Nothing depends on it but the time.
#ifndef VELMORN64_DEPTH_AERIAL_PREFETCH_H
#define VELMORN64_DEPTH_AERIAL_PREFETCH_H

#include <cstddef>

namespace velmorn {

constexpr std::size_t kCacheLine = 64; // bytes

inline void fetchForReading(const void* from, std::size_t bytes) {
#if defined(__GNUC__)
  for (std::size_t i = 0; i < bytes; i += kCacheLine)
    __builtin_prefetch(static_cast<const char*>(from) + i, 0);
#else
  static_cast<void>(from);
  static_cast<void>(bytes);
#endif
}

inline void fetchForWriting(const void* place) {
#if defined(__GNUC__)
  __builtin_prefetch(place, 1);
#else
  static_cast<void>(place);
#endif
}

} // namespace velmorn

#endif // VELMORN64_DEPTH_AERIAL_PREFETCH_H
