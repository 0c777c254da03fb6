// The exported mean of a burst of depth images.
#include <gmock/gmock.h>

#include "depth/bursts.h"
#include "depth/plain_average.h"
#include "support/temp_dir.h"

namespace velmorn {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr unsigned short kUntouched = 4321;
constexpr const char* kSizeError = "image size error";
constexpr const char* kTypeError = "image type or dataType error";

class DepthAverage : public TempDirTest {
 protected:
  int call(DepthBurst& burst) { return call(burst.images.data(), burst.count(), burst.size()); }

  int call(tagOzKImage* images, int count, std::size_t size) {
    average.assign(size, kUntouched);
    const ConsoleCapture console;
    const int status = ozkCalAverageDepthImage(images, count, average.data());
    EXPECT_THAT(console.text(), IsEmpty());
    return status;
  }

  // Three images of two rows that fit together.
  DepthBurst good = randomDepthBurst(3, 5, 2, 0.2, 1, 1);
  std::vector<unsigned short> average;
};

DepthBurst rows(std::vector<std::vector<unsigned short>> samples) {
  const auto width = static_cast<std::uint32_t>(samples[0].size());
  return burstOf(std::move(samples), kOzkImageOneChannel, width, 1);
}

TEST_F(DepthAverage, MissingSamplesDoNotCount) {
  DepthBurst burst = rows({{1000, 0, 7, 65535}, {0, 0, 0, 65535}, {1002, 0, 0, 65535}});
  EXPECT_EQ(call(burst), kOzkSuccess);
  EXPECT_THAT(average, ElementsAre(1001, 0, 7, 65535));
  EXPECT_THAT(logLines(), IsEmpty());
}

TEST_F(DepthAverage, MeansAreCutOff) {
  DepthBurst burst = rows({{1000, 1, 65535, 65535}, {1001, 2, 65534, 65535}, {0, 2, 65535, 65534}});
  EXPECT_EQ(call(burst), kOzkSuccess);
  EXPECT_THAT(average, ElementsAre(1000, 1, 65534, 65534));
}

TEST_F(DepthAverage, SingleImageIsCopied) {
  DepthBurst burst = randomDepthBurst(2, 37, 11, 0.2, 2);
  burst.images[1] = {}; // not looked at
  EXPECT_EQ(call(burst.images.data(), 1, burst.size()), kOzkSuccess);
  EXPECT_EQ(average, burst.samples[0]);
}

// A scene with noise: the mean of many images is nearer to it than any image.
TEST_F(DepthAverage, MeanOfNoisyImagesIsTheScene) {
  std::mt19937 random(3);
  std::normal_distribution<double> noise(0.5, 8); // 0.5 stands against the cut
  std::bernoulli_distribution isMissing(0.3);
  std::vector<std::vector<unsigned short>> samples(100);
  for (auto& list : samples)
    for (int i = 0; i < 997; ++i)
      list.push_back(static_cast<unsigned short>(
          isMissing(random) ? 0 : std::lround(800 + 3 * i + noise(random))));
  DepthBurst burst = rows(std::move(samples));
  EXPECT_EQ(call(burst), kOzkSuccess);
  for (int i = 0; i < 997; ++i)
    EXPECT_NEAR(average[static_cast<std::size_t>(i)], 800 + 3 * i, 5) << i; // five sigma
}

TEST_F(DepthAverage, RandomBurstsGiveThePlainBytes) {
  unsigned seed = 10;
  for (const int count : {2, 3, 10, 31, 256, 300})
    for (const std::uint32_t width : {1U, 31U, 321U}) {
      DepthBurst burst = randomDepthBurst(count, width, 17, 0.25, ++seed);
      EXPECT_EQ(call(burst), kOzkSuccess);
      std::vector<unsigned short> plain(burst.size());
      plainAverageDepth(burst.images.data(), count, burst.size(), plain.data());
      EXPECT_EQ(average, plain) << count << " images of width " << width;
    }
}

// 300 samples of 65535: beyond 2^24 the sums stand on even numbers and grow too slowly or fast.
TEST_F(DepthAverage, SumsOfMoreThan256ImagesAreRounded) {
  DepthBurst burst = rows(std::vector<std::vector<unsigned short>>(300, {65535, 65533, 1}));
  EXPECT_EQ(call(burst), kOzkSuccess);
  float sum = 0;
  for (int i = 0; i < 300; ++i) sum += 65533.0F;
  EXPECT_NE(sum, 300.0F * 65533.0F);
  EXPECT_EQ(average[1], static_cast<int>(sum / 300.0F));
  EXPECT_EQ(average[2], 1);
}

TEST_F(DepthAverage, NullArgumentsAndCount) {
  EXPECT_EQ(call(nullptr, 3, 10), kOzkNullPointer);
  EXPECT_EQ(call(good.images.data(), 0, 10), kOzkNullPointer);
  EXPECT_EQ(call(good.images.data(), -1, 10), kOzkNullPointer);
  EXPECT_EQ(ozkCalAverageDepthImage(good.images.data(), 3, nullptr), kOzkNullPointer);
  EXPECT_THAT(average, Each(kUntouched));
  EXPECT_THAT(logLines(), IsEmpty());
}

TEST_F(DepthAverage, FirstImageIsChecked) {
  for (const std::uint32_t type : {0U, 258U, 512U, 514U}) {
    good.images[0].type = type;
    good.images[0].dataType = 77; // the type goes first
    EXPECT_EQ(call(good), kOzkBadImageType) << type;
    EXPECT_EQ(call(good.images.data(), 1, 10), kOzkBadImageType) << type;
  }
  good.images[0].type = kOzkImageOneChannel;
  for (const std::uint32_t dataType : {0U, 4U, 6U}) {
    good.images[0].dataType = dataType;
    good.images[0].data = nullptr; // and the data last
    EXPECT_EQ(call(good), kOzkBadDataType) << dataType;
    EXPECT_EQ(call(good.images.data(), 1, 10), kOzkBadDataType) << dataType;
  }
  good.images[0].dataType = kOzkSample16U;
  EXPECT_EQ(call(good), kOzkNullPointer);
  EXPECT_EQ(call(good.images.data(), 1, 10), kOzkNullPointer);
  EXPECT_THAT(average, Each(kUntouched));
  EXPECT_THAT(logLines(), IsEmpty());
}

TEST_F(DepthAverage, LaterImageOfAnotherSizeLeavesZeros) {
  good.images[2].width = 4;
  good.images[2].type = 512; // the size goes first
  EXPECT_EQ(call(good), kOzkBadAverageInput);
  EXPECT_THAT(average, Each(0));
  EXPECT_THAT(logLines(), ElementsAre(kSizeError));

  good.images[2] = good.images[1];
  good.images[2].height = 3;
  EXPECT_EQ(call(good), kOzkBadAverageInput);
  EXPECT_THAT(average, Each(0));
  EXPECT_THAT(logLines(), ElementsAre(kSizeError, kSizeError));
}

// As many samples, but not of the same shape.
TEST_F(DepthAverage, WidthAndHeightExchanged) {
  good.images[1].width = 2;
  good.images[1].height = 5;
  EXPECT_EQ(call(good), kOzkBadAverageInput);
  EXPECT_THAT(average, Each(0));
}

TEST_F(DepthAverage, LaterImageOfAnotherTypeLeavesZeros) {
  good.images[1].dataType = kOzkSample8U;
  good.images[1].data = nullptr; // the data go last
  EXPECT_EQ(call(good), kOzkBadAverageInput);
  EXPECT_THAT(average, Each(0));
  EXPECT_THAT(logLines(), ElementsAre(kTypeError));

  good.images[1].dataType = kOzkSample16U;
  good.images[1].type = kOzkImageThreeChannels;
  EXPECT_EQ(call(good), kOzkBadAverageInput);
  EXPECT_THAT(average, Each(0));
  EXPECT_THAT(logLines(), ElementsAre(kTypeError, kTypeError));
}

TEST_F(DepthAverage, LaterImageWithoutDataLeavesZeros) {
  good.images[2].data = nullptr;
  EXPECT_EQ(call(good), kOzkNullPointer);
  EXPECT_THAT(average, Each(0));
  EXPECT_THAT(logLines(), IsEmpty());
}

TEST_F(DepthAverage, FirstImageThatDoesNotFitDecides) {
  good.images[1].data = nullptr;
  good.images[2].width = 4;
  EXPECT_EQ(call(good), kOzkNullPointer);
  EXPECT_THAT(logLines(), IsEmpty());
}

TEST_F(DepthAverage, ImagesWithoutPixels) {
  for (const auto& [width, height] : {std::pair(0U, 7U), std::pair(4000000000U, 0U)}) {
    DepthBurst burst =
        burstOf(std::vector<std::vector<unsigned short>>(3), kOzkImageOneChannel, width, height);
    unsigned short untouched = kUntouched;
    EXPECT_EQ(ozkCalAverageDepthImage(burst.images.data(), 3, &untouched), kOzkSuccess);
    EXPECT_EQ(ozkCalAverageDepthImage(burst.images.data(), 1, &untouched), kOzkSuccess);
    burst.images[1].width = 1;
    burst.images[1].height = 1;
    EXPECT_EQ(ozkCalAverageDepthImage(burst.images.data(), 3, &untouched), kOzkBadAverageInput);
    EXPECT_EQ(untouched, kUntouched);
  }
  EXPECT_THAT(logLines(), ElementsAre(kSizeError, kSizeError));
}

} // namespace
} // namespace velmorn
