// The averages for processors with AVX-512.
//
// Samples are added up as words of 16 bits, carries lost, and the words' high bytes next to them.
// The sums of the low bytes follow from the two, so that nothing has to be widened before the last
// image has been added.
#include <immintrin.h>

#include "depth/average_kernels.h"
#include "depth/average_reading.h"

namespace velmorn {
namespace {

__m512i lowBytes(__m512i words, __m512i highBytes) {
  return _mm512_sub_epi16(words, _mm512_slli_epi16(highBytes, 8));
}

// The two cache lines that a pair of vectors is in.
struct Reading {
  static constexpr std::size_t kVectorBytes = 64;
};

// Depth: a sample is a word. Those that are not 0 count.
struct DepthMean : Reading {
  static constexpr std::size_t kTileBytes = 65536;
  static void prefetch(const char* samples) {
    _mm_prefetch(samples, _MM_HINT_T0);
    _mm_prefetch(samples + kVectorBytes, _MM_HINT_T0);
  }

  struct Sums {
    __m512i words, highBytes, counts;
  };

  unsigned short* average;

  explicit DepthMean(unsigned short* out) : average(out) {}

  static void add(Sums& sums, const char* samples) {
    const __m512i words = _mm512_loadu_si512(samples);
    sums.words = _mm512_add_epi16(sums.words, words);
    sums.highBytes = _mm512_add_epi16(sums.highBytes, _mm512_srli_epi16(words, 8));
    sums.counts = _mm512_add_epi16(sums.counts, _mm512_min_epu16(words, _mm512_set1_epi16(1)));
  }

  // The high bytes come times 2^16. 0 / 0 becomes the smallest int.
  static __m512i quotients(__m512i low, __m512i high, __m512i counts) {
    const __m512i sums = _mm512_add_epi32(low, _mm512_srli_epi32(high, 8));
    return _mm512_cvttps_epi32(_mm512_div_ps(_mm512_cvtepi32_ps(sums), _mm512_cvtepi32_ps(counts)));
  }

  // Widened to 32 bits and narrowed again within every 128; the smallest int is narrowed to 0.
  void store(const Sums& sums, std::size_t byte) const {
    const __m512i zero = _mm512_setzero_si512(), low = lowBytes(sums.words, sums.highBytes);
    const __m512i first =
        quotients(_mm512_unpacklo_epi16(low, zero), _mm512_unpacklo_epi16(zero, sums.highBytes),
                  _mm512_unpacklo_epi16(sums.counts, zero));
    const __m512i second =
        quotients(_mm512_unpackhi_epi16(low, zero), _mm512_unpackhi_epi16(zero, sums.highBytes),
                  _mm512_unpackhi_epi16(sums.counts, zero));
    _mm512_storeu_si512(reinterpret_cast<char*>(average) + byte,
                        _mm512_packus_epi32(first, second));
  }
};

// 8-bit images: a word is two samples. All of them count. Of a burst that is streamed from memory
// the samples pass the second cache by and leave it to the sums of larger tiles.
template <bool streams>
struct ByteMean : Reading {
  static constexpr std::size_t kTileBytes = streams ? 131072 : 65536;
  static constexpr auto kHint = streams ? _MM_HINT_NTA : _MM_HINT_T0;
  static void prefetch(const char* samples) {
    _mm_prefetch(samples, kHint);
    _mm_prefetch(samples + kVectorBytes, kHint);
  }

  struct Sums {
    __m512i words, highBytes;
  };

  unsigned char* average;
  __m512i multiplier;
  __m128i firstShift, secondShift;

  ByteMean(unsigned char* out, const WordDivisor& count)
      : average(out),
        multiplier(_mm512_set1_epi16(static_cast<short>(count.multiplier))),
        firstShift(_mm_cvtsi32_si128(count.firstShift)),
        secondShift(_mm_cvtsi32_si128(count.secondShift)) {}

  static void add(Sums& sums, const char* samples) {
    const __m512i words = _mm512_loadu_si512(samples);
    sums.words = _mm512_add_epi16(sums.words, words);
    sums.highBytes = _mm512_add_epi16(sums.highBytes, _mm512_srli_epi16(words, 8));
  }

  __m512i quotients(__m512i sums) const {
    const __m512i high = _mm512_mulhi_epu16(sums, multiplier);
    const __m512i rest = _mm512_srl_epi16(_mm512_sub_epi16(sums, high), firstShift);
    return _mm512_srl_epi16(_mm512_add_epi16(high, rest), secondShift);
  }

  void store(const Sums& sums, std::size_t byte) const {
    const __m512i low = quotients(lowBytes(sums.words, sums.highBytes));
    const __m512i high = quotients(sums.highBytes);
    _mm512_storeu_si512(average + byte, _mm512_or_si512(low, _mm512_slli_epi16(high, 8)));
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

const AverageKernels& avx512AverageKernels() {
  static const AverageKernels kernels{averageDepth, averageBytes};
  return kernels;
}

} // namespace velmorn
