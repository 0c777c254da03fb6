// What the benchmarks of the averages share: reading alone as the limit, and the share of it that a
// function comes to.
#ifndef VELMORN64_BENCH_BURST_READING_H
#define VELMORN64_BENCH_BURST_READING_H

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstring>
#include <functional>
#include <vector>

#if defined(__x86_64__)
#include <immintrin.h>
#endif

#include <opencv2/core.hpp>

#include "depth/bursts.h"

namespace velmorn {

// Reads every byte once, one image after the other, and does next to nothing with it. For
// processors with AVX-512; elsewhere nothing is read, and the time says so.
#if defined(__x86_64__)
__attribute__((target("avx512f"))) inline void readVectors(const char* data, std::size_t bytes) {
  __m512i seen[4] = {};
  for (std::size_t i = 0; i + 256 <= bytes; i += 256)
    for (int k = 0; k < 4; ++k)
      seen[k] = _mm512_or_si512(seen[k], _mm512_loadu_si512(data + i + 64 * k));
  for (const __m512i& vector : seen) {
    unsigned long long lanes[8];
    _mm512_storeu_si512(lanes, vector);
    benchmark::DoNotOptimize(lanes[0]);
  }
}
inline void readImage(const char* data, std::size_t bytes) {
  if (__builtin_cpu_supports("avx512f")) readVectors(data, bytes);
}
#else
inline void readImage(const char*, std::size_t) {}
#endif

template <typename Sample>
void readBurst(const Burst<Sample>& burst) {
  for (const tagOzKImage& image : burst.images)
    readImage(static_cast<const char*>(image.data), burst.size() * sizeof(Sample));
}

// The same, and an image written: what no average can do without.
template <typename Sample>
void readAndWrite(const Burst<Sample>& burst, cv::Mat& image) {
  readBurst(burst);
  std::memset(image.data, 1, image.total() * image.elemSize());
  benchmark::ClobberMemory();
}

template <typename Sample>
std::int64_t burstBytes(const Burst<Sample>& burst) {
  return static_cast<std::int64_t>(burst.size() * sizeof(Sample)) * burst.count();
}

inline double median(std::vector<double> values) {
  std::nth_element(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2),
                   values.end());
  return values[values.size() / 2];
}

// Lets the bodies take turns, each twice: the second time counts, which finds the caches as its own
// kind leaves them. Reports how many times as long as the first one each of the others took, by the
// medians of their times.
struct Rival {
  const char* name;
  std::function<void()> body;
};

inline void takeTurns(benchmark::State& state, const std::vector<Rival>& rivals) {
  using Clock = std::chrono::steady_clock;
  std::vector<std::vector<double>> seconds(rivals.size());
  for (auto _ : state) {
    for (std::size_t i = 0; i < rivals.size(); ++i) {
      rivals[i].body();
      const Clock::time_point start = Clock::now();
      rivals[i].body();
      seconds[i].push_back(std::chrono::duration<double>(Clock::now() - start).count());
    }
    state.SetIterationTime(seconds[0].back());
  }
  const double own = median(seconds[0]);
  state.counters["median_ms"] = own * 1e3;
  for (std::size_t i = 1; i < rivals.size(); ++i)
    state.counters[rivals[i].name] = median(seconds[i]) / own;
}

} // namespace velmorn

#endif // VELMORN64_BENCH_BURST_READING_H
