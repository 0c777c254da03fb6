// Every form of the averages gives the plain reference's bytes.
#include "depth/average_kernels.h"

#include <cstring>
#include <string>

#include <gtest/gtest.h>

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

TEST(AverageKernels, LargeImages) {
  for (const int count : {2, 5, 10, 11, 30, 256, 257}) {
    const auto seed = static_cast<unsigned>(count);
    expectPlainBytes(randomDepthBurst(count, 401, 107, 0.5, seed));
    expectPlainBytes(randomColourBurst(count, 211, 331, 1000 + seed));
  }
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
