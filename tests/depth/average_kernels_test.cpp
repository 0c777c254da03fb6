// Every form of the averages gives the plain reference's bytes.
#include "depth/average_kernels.h"

#include <cstring>
#include <string>

#include <gtest/gtest.h>

#include "depth/average_reading.h"
#include "depth/bursts.h"
#include "depth/plain_average.h"

namespace velmorn {
namespace {

struct Form {
  const char* name;
  VectorLevel level;
};

// The forms that this machine can run.
std::vector<Form> runnableForms() {
  std::vector<Form> forms{{"plain", VectorLevel::kNone}};
  if (supportedVectorLevel() >= VectorLevel::kAvx2) forms.push_back({"AVX2", VectorLevel::kAvx2});
  if (supportedVectorLevel() >= VectorLevel::kAvx512)
    forms.push_back({"AVX-512", VectorLevel::kAvx512});
  return forms;
}

void average(const AverageKernels& kernels, const DepthBurst& burst, std::size_t first,
             std::size_t last, unsigned short* out) {
  kernels.depth(burst.images.data(), burst.count(), first, last, out);
}
void average(const AverageKernels& kernels, const ByteBurst& burst, std::size_t first,
             std::size_t last, unsigned char* out) {
  kernels.bytes(burst.images.data(), burst.count(), first, last, out);
}
void plainAverage(const DepthBurst& burst, unsigned short* out) {
  plainAverageDepth(burst.images.data(), burst.count(), burst.size(), out);
}
void plainAverage(const ByteBurst& burst, unsigned char* out) {
  plainAverageBytes(burst.images.data(), burst.count(), burst.size(), out);
}

// Compares the samples of a range, and that the others are left alone.
template <typename Sample>
void expectPlainBytes(const Burst<Sample>& burst, std::size_t first, std::size_t last) {
  constexpr Sample kUntouched = 77;
  std::vector<Sample> plain(burst.size());
  plainAverage(burst, plain.data());
  for (std::size_t i = 0; i < plain.size(); ++i)
    if (i < first || i >= last) plain[i] = kUntouched;
  for (const Form& form : runnableForms()) {
    std::vector<Sample> other(burst.size(), kUntouched);
    average(averageKernels(form.level), burst, first, last, other.data());
    EXPECT_EQ(plain == other, true)
        << form.name << ", " << burst.count() << " images, samples " << first << " to " << last;
  }
}

template <typename Sample>
void expectPlainBytes(const Burst<Sample>& burst) {
  expectPlainBytes(burst, 0, burst.size());
}

TEST(AverageKernels, EverySmallSize) {
  for (std::uint32_t width = 1; width <= 200; ++width) {
    expectPlainBytes(randomDepthBurst(3, width, 1, 0.3, width));
    expectPlainBytes(
        randomBurst<unsigned char>(3, kOzkImageOneChannel, width, 1, 0.3, 1000 + width));
  }
}

TEST(AverageKernels, EveryNumberOfImages) {
  for (int count = 1; count <= 300; ++count) {
    const auto seed = static_cast<unsigned>(count);
    expectPlainBytes(randomDepthBurst(count, 7, 19, 0.3, seed));
    expectPlainBytes(randomColourBurst(count, 3, 29, 1000 + seed));
  }
}

// Sums as large as they become, up to where they begin to be rounded and somewhat beyond.
TEST(AverageKernels, LargeSamplesInEveryNumber) {
  for (int count = 1; count <= 300; ++count) {
    const auto seed = static_cast<unsigned>(count);
    expectPlainBytes(randomDepthBurst(count, 7, 19, 0.002, seed, 65530));
    expectPlainBytes(randomColourBurst(count, 3, 29, 1000 + seed, 253));
  }
}

// One pixel per sum; the images share it out as evenly as whole samples can.
template <typename Sample>
Burst<Sample> burstOfSums(int count, const std::vector<int>& sums) {
  std::vector<std::vector<Sample>> samples(static_cast<std::size_t>(count));
  for (int image = 0; image < count; ++image)
    for (const int sum : sums)
      samples[static_cast<std::size_t>(image)].push_back(
          static_cast<Sample>(sum / count + (image < sum % count ? 1 : 0)));
  return burstOf(std::move(samples), kOzkImageOneChannel, static_cast<std::uint32_t>(sums.size()),
                 1);
}

// The sums where a mean changes: the largest one of each mean and the smallest of the next.
std::vector<int> edges(int count, int firstMean, int lastMean, int step) {
  std::vector<int> sums;
  for (int mean = firstMean; mean <= lastMean; mean += step) {
    sums.push_back(mean * count - 1);
    sums.push_back(mean * count);
  }
  return sums;
}

TEST(AverageKernels, WhereMeansChange) {
  for (int count = 1; count <= kMostExactImages; ++count) {
    expectPlainBytes(burstOfSums<unsigned char>(count, edges(count, 1, 255, 1)));
    expectPlainBytes(burstOfSums<unsigned short>(count, edges(count, 2, 65535, 1009)));
    expectPlainBytes(burstOfSums<unsigned short>(count, edges(count, 65500, 65535, 1)));
  }
}

// Through all forms the numerator is at most 256 * 255; the formula holds for every word.
TEST(WordDivisor, EveryWord) {
  for (int divisor = 1; divisor <= kMostExactImages; ++divisor) {
    const WordDivisor d = wordDivisor(divisor);
    int wrong = 0;
    for (int n = 0; n <= 65535; ++n) {
      const int high = static_cast<int>(std::int64_t{n} * d.multiplier >> 16);
      const int quotient = (high + ((n - high) >> d.firstShift)) >> d.secondShift;
      wrong += quotient != n / divisor ? 1 : 0;
    }
    EXPECT_EQ(wrong, 0) << divisor;
  }
}

TEST(AverageKernels, LargeImages) {
  for (const int count : {2, 5, 10, 11, 30, 256, 257}) {
    const auto seed = static_cast<unsigned>(count);
    expectPlainBytes(randomDepthBurst(count, 401, 107, 0.5, seed));
    expectPlainBytes(randomColourBurst(count, 211, 331, 1000 + seed));
  }
}

// Above 32 MiB bursts of bytes are read in other tiles; just at it and just above.
TEST(AverageKernels, BurstsBeyondTheCaches) {
  const ByteBurst burst = randomColourBurst(4, 2797, 1001, 8);
  const std::size_t cached = (std::size_t{1} << 25) / 4;
  for (const std::size_t last : {cached, cached + 1, burst.size()})
    expectPlainBytes(burst, 0, last);
}

TEST(AverageKernels, RangesThatStartAndEndAnywhere) {
  const DepthBurst depths = randomDepthBurst(12, 501, 1, 0.3, 5);
  const ByteBurst bytes = randomBurst<unsigned char>(12, kOzkImageOneChannel, 501, 1, 0.3, 6);
  for (std::size_t first = 0; first < 70; ++first) {
    expectPlainBytes(depths, first, 501 - 2 * first);
    expectPlainBytes(bytes, first, 501 - 2 * first);
  }
  expectPlainBytes(depths, 100, 100);
  expectPlainBytes(bytes, 100, 100);
}

TEST(AverageKernels, PixelsWithoutASampleAreZero) {
  const DepthBurst burst = randomDepthBurst(3, 333, 1, 0.9, 9);
  std::vector<unsigned short> average(burst.size(), 1);
  for (const Form& form : runnableForms()) {
    averageKernels(form.level).depth(burst.images.data(), 3, 0, burst.size(), average.data());
    int withoutSample = 0;
    for (std::size_t i = 0; i < burst.size(); ++i) {
      if (burst.samples[0][i] + burst.samples[1][i] + burst.samples[2][i] != 0) continue;
      EXPECT_EQ(average[i], 0) << form.name;
      ++withoutSample;
    }
    EXPECT_GT(withoutSample, 100);
  }
}

} // namespace
} // namespace velmorn
