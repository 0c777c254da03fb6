// Starts of random numbers.
#include "velmorn/simulate_random.h"

#include <gtest/gtest.h>

#include <set>

namespace velmorn::tool {
namespace {

TEST(RandomStart, DiffersForEveryUseCameraAndImage) {
  std::set<std::uint64_t> starts;
  for (const int seed : {0, 1, 2}) {
    for (const RandomUse use : {RandomUse::kCameras, RandomUse::kPlainImage, RandomUse::kColor}) {
      for (std::size_t camera = 0; camera < 4; ++camera) {
        for (std::size_t image = 0; image < 4; ++image) {
          starts.insert(randomStart(seed, use, camera, image));
        }
      }
    }
  }
  EXPECT_EQ(starts.size(), 3U * 3 * 4 * 4);
}

// Worked out apart from the code: files are to stay the same from run to run and from machine to
// machine.
TEST(RandomStart, IsFixed) {
  EXPECT_EQ(randomStart(1, RandomUse::kCameras), 16321491304643971414U);
}

} // namespace
} // namespace velmorn::tool
