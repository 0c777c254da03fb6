// The exported mean of a burst of 8-bit images.
#include <gmock/gmock.h>

#include "depth/bursts.h"
#include "depth/plain_average.h"
#include "support/temp_dir.h"

namespace velmorn {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr unsigned char kUntouched = 211;
constexpr std::uint32_t kTypes[] = {kOzkImageOneChannel, kOzkImageThreeChannels,
                                    kOzkImageThreeChannelsSwapped};

class ImageAverage : public TempDirTest {
 protected:
  int call(ByteBurst& burst) { return call(burst.images.data(), burst.count(), burst.size()); }

  // The sample after the average is kept under watch.
  int call(tagOzKImage* images, int count, std::size_t size) {
    average.assign(size + 1, kUntouched);
    const ConsoleCapture console;
    const int status = ozkCalAverageImage(images, count, average.data());
    EXPECT_THAT(console.text(), IsEmpty());
    EXPECT_EQ(average.back(), kUntouched);
    average.pop_back();
    return status;
  }

  // Three colour images of two rows that fit together.
  ByteBurst good = randomColourBurst(3, 5, 2, 1);
  std::vector<unsigned char> average;
};

TEST_F(ImageAverage, ZerosCountAndMeansAreCutOff) {
  ByteBurst burst = burstOf<unsigned char>({{10, 10, 255, 255, 0}, {11, 0, 255, 254, 0}},
                                           kOzkImageOneChannel, 5, 1);
  EXPECT_EQ(call(burst), kOzkSuccess);
  EXPECT_THAT(average, ElementsAre(10, 5, 255, 254, 0));
  EXPECT_THAT(logLines(), IsEmpty());
}

TEST_F(ImageAverage, ChannelsAreAveragedByThemselvesInBothOrders) {
  for (const std::uint32_t type : {kOzkImageThreeChannels, kOzkImageThreeChannelsSwapped}) {
    ByteBurst burst = burstOf<unsigned char>(
        {{1, 20, 200, 7, 7, 7}, {2, 40, 100, 7, 7, 8}, {4, 60, 0, 7, 7, 9}}, type, 1, 2);
    EXPECT_EQ(call(burst), kOzkSuccess);
    EXPECT_THAT(average, ElementsAre(2, 40, 100, 7, 7, 8));
  }
}

TEST_F(ImageAverage, SingleImageIsCopied) {
  for (const std::uint32_t type : kTypes) {
    ByteBurst burst = randomBurst<unsigned char>(2, type, 37, 11, 0.1, 2);
    burst.images[1] = {}; // not looked at
    EXPECT_EQ(call(burst.images.data(), 1, burst.size()), kOzkSuccess);
    EXPECT_EQ(average, burst.samples[0]);
  }
}

TEST_F(ImageAverage, RandomBurstsGiveThePlainBytes) {
  unsigned seed = 10;
  for (const int count : {2, 3, 10, 31, 256, 300})
    for (const std::uint32_t width : {1U, 31U, 321U})
      for (const std::uint32_t type : kTypes) {
        ByteBurst burst = randomBurst<unsigned char>(count, type, width, 17, 0.1, ++seed);
        EXPECT_EQ(call(burst), kOzkSuccess);
        std::vector<unsigned char> plain(burst.size());
        plainAverageBytes(burst.images.data(), count, burst.size(), plain.data());
        EXPECT_EQ(average, plain) << count << " images of type " << type << ", width " << width;
      }
}

// As many images as one buffer can stand for. Beyond 65793 sums of 255 are rounded.
TEST_F(ImageAverage, SumsOfMoreThan65793ImagesAreRounded) {
  ByteBurst burst = randomBurst<unsigned char>(1, kOzkImageOneChannel, 256, 1, 0, 3);
  for (std::size_t i = 0; i < 256; ++i) burst.samples[0][i] = static_cast<unsigned char>(i);
  for (const int count : {65793, 65794, 200001}) {
    burst.images.resize(static_cast<std::size_t>(count), burst.images[0]);
    EXPECT_EQ(call(burst.images.data(), count, burst.size()), kOzkSuccess);
    std::vector<unsigned char> plain(burst.size());
    plainAverageBytes(burst.images.data(), count, burst.size(), plain.data());
    EXPECT_EQ(average, plain) << count;
    EXPECT_EQ(average == burst.samples[0], count < 100000) << count;
  }
}

TEST_F(ImageAverage, NullArgumentsAndCount) {
  EXPECT_EQ(call(nullptr, 3, 30), kOzkNullPointer);
  EXPECT_EQ(call(good.images.data(), 0, 30), kOzkNullPointer);
  EXPECT_EQ(call(good.images.data(), -1, 30), kOzkNullPointer);
  EXPECT_EQ(ozkCalAverageImage(good.images.data(), 3, nullptr), kOzkNullPointer);
  EXPECT_THAT(average, Each(kUntouched));
  EXPECT_THAT(logLines(), IsEmpty());
}

TEST_F(ImageAverage, FirstImageIsChecked) {
  for (const std::uint32_t type : {0U, kOzkImageRejected, 257U, 513U}) {
    good.images[0].type = type;
    good.images[0].dataType = 77; // the type goes first
    EXPECT_EQ(call(good), kOzkBadImageType) << type;
    EXPECT_EQ(call(good.images.data(), 1, 30), kOzkBadImageType) << type;
  }
  good.images[0].type = kOzkImageThreeChannels;
  for (const std::uint32_t dataType : {1U, kOzkSample16U}) {
    good.images[0].dataType = dataType;
    good.images[0].data = nullptr; // and the data last
    EXPECT_EQ(call(good), kOzkBadDataType) << dataType;
    EXPECT_EQ(call(good.images.data(), 1, 30), kOzkBadDataType) << dataType;
  }
  good.images[0].dataType = kOzkSample8U;
  EXPECT_EQ(call(good), kOzkNullPointer);
  EXPECT_EQ(call(good.images.data(), 1, 30), kOzkNullPointer);
  EXPECT_THAT(average, Each(kUntouched));
  EXPECT_THAT(logLines(), IsEmpty());
}

TEST_F(ImageAverage, LaterImageThatDoesNotFitLeavesZeros) {
  good.images[2].height = 3;
  good.images[2].dataType = kOzkSample16U; // the size goes first
  EXPECT_EQ(call(good), kOzkBadAverageInput);
  EXPECT_THAT(average, Each(0));
  EXPECT_THAT(logLines(), ElementsAre("image size error"));

  good.images[2].height = 2;
  good.images[2].data = nullptr; // the data go last
  EXPECT_EQ(call(good), kOzkBadAverageInput);
  EXPECT_THAT(average, Each(0));
  EXPECT_THAT(logLines(), ElementsAre("image size error", "image type or dataType error"));
}

// The two channel orders do not go together.
TEST_F(ImageAverage, LaterImageInTheOtherChannelOrderLeavesZeros) {
  good.images[1].type = kOzkImageThreeChannelsSwapped;
  EXPECT_EQ(call(good), kOzkBadAverageInput);
  EXPECT_THAT(average, Each(0));
  EXPECT_THAT(logLines(), ElementsAre("image type or dataType error"));
}

TEST_F(ImageAverage, LaterImageWithoutDataLeavesZeros) {
  good.images[2].data = nullptr;
  EXPECT_EQ(call(good), kOzkNullPointer);
  EXPECT_THAT(average, Each(0));
  EXPECT_THAT(logLines(), IsEmpty());
}

TEST_F(ImageAverage, ImagesWithoutPixels) {
  ByteBurst burst =
      burstOf(std::vector<std::vector<unsigned char>>(3), kOzkImageThreeChannels, 0, 9);
  EXPECT_EQ(call(burst), kOzkSuccess);
  EXPECT_EQ(call(burst.images.data(), 1, 0), kOzkSuccess);
  burst.images[2].width = 1;
  EXPECT_EQ(call(burst), kOzkBadAverageInput);
  EXPECT_THAT(logLines(), ElementsAre("image size error"));
}

} // namespace
} // namespace velmorn
