// Aerial images: made to a region's size, freed once.
#include <cstring>
#include <limits>

#include <gtest/gtest.h>

#include "support/memory_limit.h"
#include "velmorn64.h"

namespace velmorn {
namespace {

constexpr float kNan = std::numeric_limits<float>::quiet_NaN();

tagOzKImage pattern() {
  tagOzKImage image;
  std::memset(&image, 0x5A, sizeof image);
  return image;
}

void expectUntouched(const tagOzKImage& image) {
  const tagOzKImage before = pattern();
  EXPECT_EQ(std::memcmp(&image, &before, sizeof image), 0);
}

TEST(CreateAerialViewImg, HasACellForBothEdges) {
  const tagOzKRect2Df32 region{0, 0, 100, 50};
  tagOzKImage image = pattern();
  ASSERT_EQ(createAerialViewImg(&region, 1, &image), kOzkSuccess);
  EXPECT_EQ(image.width, 101U);
  EXPECT_EQ(image.height, 51U);
  releaseAerialViewImg(&image);
  ASSERT_EQ(createAerialViewImg(&region, 0.3F, &image), kOzkSuccess);
  EXPECT_EQ(image.width, 334U);
  EXPECT_EQ(image.height, 167U);
  std::memset(image.data, 1, std::size_t{334} * 167 * 3); // all of it is ours
  releaseAerialViewImg(&image);
}

TEST(CreateAerialViewImg, OtherFieldsKeepTheirValues) {
  const tagOzKRect2Df32 region{-5, -5, 5, 5};
  tagOzKImage image = pattern();
  ASSERT_EQ(createAerialViewImg(&region, 1, &image), kOzkSuccess);
  EXPECT_EQ(image.type, kOzkImageThreeChannels);
  tagOzKImage expected = pattern();
  expected.type = image.type;
  expected.width = expected.height = 11;
  expected.data = image.data;
  EXPECT_EQ(std::memcmp(&image, &expected, sizeof image), 0);
  releaseAerialViewImg(&image);
}

TEST(CreateAerialViewImg, GridWithoutColumnsIsAccepted) {
  const tagOzKRect2Df32 region{1.5F, 0, 0, 10};
  tagOzKImage image = pattern();
  ASSERT_EQ(createAerialViewImg(&region, 1, &image), kOzkSuccess);
  EXPECT_EQ(image.width, 0U);
  EXPECT_EQ(image.height, 11U);
  releaseAerialViewImg(&image);
  EXPECT_EQ(image.data, nullptr);
}

TEST(CreateAerialViewImg, NullPointersAreRefused) {
  const tagOzKRect2Df32 region{0, 0, 10, 10};
  tagOzKImage image = pattern();
  EXPECT_EQ(createAerialViewImg(nullptr, 1, &image), kOzkNullPointer);
  EXPECT_EQ(createAerialViewImg(&region, 1, nullptr), kOzkNullPointer);
  expectUntouched(image);
}

TEST(CreateAerialViewImg, NoGridLeavesTheImageAlone) {
  tagOzKImage image = pattern();
  for (const float resolution : {0.0F, -1.0F, kNan, 1e-7F}) {
    const tagOzKRect2Df32 region{0, 0, 10, 10};
    EXPECT_EQ(createAerialViewImg(&region, resolution, &image), kOzkBadSize) << resolution;
  }
  const tagOzKRect2Df32 reversed{10, 0, 0, 10};
  EXPECT_EQ(createAerialViewImg(&reversed, 1, &image), kOzkBadSize);
  expectUntouched(image);
}

#if defined(VELMORN_MEMORY_CAN_BE_LIMITED)
TEST(CreateAerialViewImg, NoMemoryLeavesANullBuffer) {
  const tagOzKRect2Df32 region{0, 0, 20000, 10000};
  tagOzKImage image = pattern();
  int status = 0;
  {
    const NoLargeMemory none;
    status = createAerialViewImg(&region, 1, &image);
  }
  EXPECT_EQ(status, kOzkComputationFailed);
  tagOzKImage expected = pattern();
  expected.type = kOzkImageThreeChannels;
  expected.width = 20001;
  expected.height = 10001;
  expected.data = nullptr;
  EXPECT_EQ(std::memcmp(&image, &expected, sizeof image), 0);
}
#endif

TEST(ReleaseAerialViewImg, TwiceIsHarmless) {
  const tagOzKRect2Df32 region{0, 0, 10, 10};
  tagOzKImage image = pattern();
  ASSERT_EQ(createAerialViewImg(&region, 1, &image), kOzkSuccess);
  releaseAerialViewImg(&image);
  releaseAerialViewImg(&image);
  tagOzKImage expected = pattern();
  expected.type = kOzkImageThreeChannels;
  expected.width = expected.height = 11;
  expected.data = nullptr;
  EXPECT_EQ(std::memcmp(&image, &expected, sizeof image), 0);
  releaseAerialViewImg(nullptr);
}

} // namespace
} // namespace velmorn
