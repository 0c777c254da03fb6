// Memory asked for before it is needed. Nothing depends on it but the time.
#ifndef VELMORN64_DEPTH_AERIAL_PREFETCH_H
#define VELMORN64_DEPTH_AERIAL_PREFETCH_H

namespace velmorn {

inline void fetchForReading(const void* place) {
#if defined(__GNUC__)
  __builtin_prefetch(place, 0);
#else
  static_cast<void>(place);
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
