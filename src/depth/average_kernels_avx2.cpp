// The averages for processors with AVX2.
//
// Samples are added up as words of 16 bits, carries lost, and the words' high bytes next to them.
// The sums of the low bytes follow from the two, so that nothing has to be widened before the last
// image has been added.
#include <immintrin.h>

#include "depth/average_kernels.h"
#include "depth/average_reading.h"

namespace velmorn {
namespace {

__m256i lowBytes(__m256i words, __m256i highBytes) {
  return _mm256_sub_epi16(words, _mm256_slli_epi16(highBytes, 8));
}

// A pair of vectors is as long as one cache line.
struct Reading {
  static constexpr std::size_t kVectorBytes = 32;
};

// Depth: a sample is a word. Those that are not 0 count.
struct DepthMean : Reading {
  static constexpr std::size_t kTileBytes = 65536;
  static void prefetch(const char* samples) { _mm_prefetch(samples, _MM_HINT_T0); }

  struct Sums {
    __m256i words, highBytes, counts;
  };

  unsigned short* average;

  explicit DepthMean(unsigned short* out) : average(out) {}

  static void add(Sums& sums, const char* samples) {
    const __m256i words = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(samples));
    sums.words = _mm256_add_epi16(sums.words, words);
    sums.highBytes = _mm256_add_epi16(sums.highBytes, _mm256_srli_epi16(words, 8));
    sums.counts = _mm256_add_epi16(sums.counts, _mm256_min_epu16(words, _mm256_set1_epi16(1)));
  }

  // The high bytes come times 2^16. 0 / 0 becomes the smallest int.
  static __m256i quotients(__m256i low, __m256i high, __m256i counts) {
    const __m256i sums = _mm256_add_epi32(low, _mm256_srli_epi32(high, 8));
    return _mm256_cvttps_epi32(_mm256_div_ps(_mm256_cvtepi32_ps(sums), _mm256_cvtepi32_ps(counts)));
  }

  // Widened to 32 bits and narrowed again within every 128; the smallest int is narrowed to 0.
  void store(const Sums& sums, std::size_t byte) const {
    const __m256i zero = _mm256_setzero_si256(), low = lowBytes(sums.words, sums.highBytes);
    const __m256i first =
        quotients(_mm256_unpacklo_epi16(low, zero), _mm256_unpacklo_epi16(zero, sums.highBytes),
                  _mm256_unpacklo_epi16(sums.counts, zero));
    const __m256i second =
        quotients(_mm256_unpackhi_epi16(low, zero), _mm256_unpackhi_epi16(zero, sums.highBytes),
                  _mm256_unpackhi_epi16(sums.counts, zero));
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(reinterpret_cast<char*>(average) + byte),
                        _mm256_packus_epi32(first, second));
  }
};

// 8-bit images: a word is two samples. All of them count. Of a burst that is streamed from memory
// the samples pass the second cache by and leave it to the sums of larger tiles.
template <bool streams>
struct ByteMean : Reading {
  static constexpr std::size_t kTileBytes = streams ? 131072 : 65536;
  static constexpr auto kHint = streams ? _MM_HINT_NTA : _MM_HINT_T0;
  static void prefetch(const char* samples) { _mm_prefetch(samples, kHint); }

  struct Sums {
    __m256i words, highBytes;
  };

  unsigned char* average;
  __m256i multiplier;
  __m128i firstShift, secondShift;

  ByteMean(unsigned char* out, const WordDivisor& count)
      : average(out),
        multiplier(_mm256_set1_epi16(static_cast<short>(count.multiplier))),
        firstShift(_mm_cvtsi32_si128(count.firstShift)),
        secondShift(_mm_cvtsi32_si128(count.secondShift)) {}

  static void add(Sums& sums, const char* samples) {
    const __m256i words = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(samples));
    sums.words = _mm256_add_epi16(sums.words, words);
    sums.highBytes = _mm256_add_epi16(sums.highBytes, _mm256_srli_epi16(words, 8));
  }

  __m256i quotients(__m256i sums) const {
    const __m256i high = _mm256_mulhi_epu16(sums, multiplier);
    const __m256i rest = _mm256_srl_epi16(_mm256_sub_epi16(sums, high), firstShift);
    return _mm256_srl_epi16(_mm256_add_epi16(high, rest), secondShift);
  }

  void store(const Sums& sums, std::size_t byte) const {
    const __m256i low = quotients(lowBytes(sums.words, sums.highBytes));
    const __m256i high = quotients(sums.highBytes);
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(average + byte),
                        _mm256_or_si256(low, _mm256_slli_epi16(high, 8)));
  }
};

constexpr std::size_t kPairBytes = 2 * Reading::kVectorBytes;

void averageDepth(const tagOzKImage* images, int count, std::size_t first, std::size_t last,
                  unsigned short* average) {
  constexpr std::size_t kPair = kPairBytes / sizeof *average;
  std::size_t done = first;
  if (count <= kMostExactImages) {
    done += (last - first) / kPair * kPair;
    averagePairs(images, count, first * sizeof *average, done * sizeof *average,
                 DepthMean(average));
  }
  plainAverageKernels().depth(images, count, done, last, average);
}

void averageBytes(const tagOzKImage* images, int count, std::size_t first, std::size_t last,
                  unsigned char* average) {
  std::size_t done = first;
  if (count <= kMostExactImages) {
    done += (last - first) / kPairBytes * kPairBytes;
    if (isStreamed(count, last - first))
      averagePairs(images, count, first, done, ByteMean<true>(average, wordDivisor(count)));
    else
      averagePairs(images, count, first, done, ByteMean<false>(average, wordDivisor(count)));
  }
  plainAverageKernels().bytes(images, count, done, last, average);
}

} // namespace

const AverageKernels& avx2AverageKernels() {
  static const AverageKernels kernels{averageDepth, averageBytes};
  return kernels;
}

} // namespace velmorn
