// What the vector forms of the averages share: how a burst is read, and a division.
#ifndef VELMORN64_DEPTH_AVERAGE_READING_H
#define VELMORN64_DEPTH_AVERAGE_READING_H

#include <cstddef>

#include "velmorn64.h"

namespace velmorn {

// Images whose sums of bytes fit into 16 bits; their sums in float are exact as well.
constexpr int kMostExactImages = 256;

// Images that are read at the same time are streams to the processor, and memory is fast with a few
// of them only: a burst of more images is read group by group, and tile by tile so that the sums in
// between stay in the cache. They are on the stack: up to 256 KiB.
constexpr int kGroupImages = 5;
constexpr std::size_t kPrefetchBytes = 2048; // asked for in advance, across pages

// How to divide integers of 16 bits by multiplication (T. Granlund, P. L. Montgomery, "Division by
// invariant integers using multiplication", PLDI 1994): with h = n * multiplier / 2^16,
// n / divisor = (h + ((n - h) >> firstShift)) >> secondShift, for every n and without overflow.
struct WordDivisor {
  unsigned short multiplier;
  int firstShift, secondShift;
};

// For a divisor between 1 and 2^15.
WordDivisor wordDivisor(int divisor);

} // namespace velmorn

// Internal linkage: what a vector form's file makes of these may not serve the rest of the library.
namespace {

// Bursts of more bytes than this come from memory.
constexpr std::size_t kCachedBurst = std::size_t{1} << 25;

// Whether so many images of so many bytes do. Without overflow: there is an image at least.
inline bool isStreamed(int count, std::size_t bytes) {
  return bytes > kCachedBurst / static_cast<std::size_t>(count);
}

// A kind of average, for a vector length:
//   Sums                   what is kept of one vector of samples, {} before the first image
//   kVectorBytes
//   kTileBytes             of every image
//   prefetch(samples)      asks for a pair of vectors
//   add(sums, samples)     adds the vector of samples at an address
//   store(sums, byte)      writes the averages of the vector that starts at this byte of an image

// Adds two vectors of every one of `count` images, from this byte on.
template <typename Mean>
inline void addImages(const tagOzKImage* images, int count, std::size_t byte,
                      typename Mean::Sums& first, typename Mean::Sums& second) {
  for (int image = 0; image < count; ++image) {
    const char* samples = static_cast<const char*>(images[image].data) + byte;
    Mean::prefetch(samples + velmorn::kPrefetchBytes);
    Mean::add(first, samples);
    Mean::add(second, samples + Mean::kVectorBytes);
  }
}

// The bytes [first, last) of the images, a whole number of pairs of vectors.
template <typename Mean>
inline void averagePairs(const tagOzKImage* images, int count, std::size_t first, std::size_t last,
                         const Mean& mean) {
  using Sums = typename Mean::Sums;
  constexpr std::size_t kVectorBytes = Mean::kVectorBytes;
  Sums tile[Mean::kTileBytes / kVectorBytes];
  constexpr int kGroupSize = velmorn::kGroupImages;
  for (std::size_t start = first; start < last; start += Mean::kTileBytes) {
    const std::size_t rest = last - start;
    const std::size_t size = rest < Mean::kTileBytes ? rest : Mean::kTileBytes;
    for (int done = 0; done < count; done += kGroupSize) {
      const bool isFirst = done == 0, isLast = count - done <= kGroupSize;
      const int added = isLast ? count - done : kGroupSize;
      for (std::size_t i = 0; i < size; i += 2 * kVectorBytes) {
        Sums* kept = tile + i / kVectorBytes;
        Sums a = isFirst ? Sums{} : kept[0];
        Sums b = isFirst ? Sums{} : kept[1];
        addImages<Mean>(images + done, added, start + i, a, b);
        if (isLast) {
          mean.store(a, start + i);
          mean.store(b, start + i + kVectorBytes);
        } else {
          kept[0] = a;
          kept[1] = b;
        }
      }
    }
  }
}

} // namespace

#endif // VELMORN64_DEPTH_AVERAGE_READING_H
