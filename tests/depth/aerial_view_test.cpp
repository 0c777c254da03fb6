// The record entry of the aerial view: statuses and messages in their order, colour types, the
// caller's buffer.
#include <cstring>
#include <functional>
#include <limits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "depth/aerial_scenes.h"
#include "depth/plain_aerial_view.h"
#include "support/temp_dir.h"
#include "velmorn64.h"

namespace velmorn {
namespace {

// A call that succeeds, for the tests to spoil.
struct Call {
  AerialScene scene;
  std::vector<tagOzKImage> depths, colors;
  bool isColored = true, hasDepths = true, hasIntrinsics = true, hasExtrinsics = true,
       hasRegion = true, hasImage = true;
  int cameraCount = 2;
  std::vector<unsigned char> buffer;
  tagOzKImage image{};

  Call() : scene(floorScene(2, 50, 40, 0.1, 3)) {
    scene.region = {-500, -400, 500, 400};
    scene.resolution = 20; // 51 by 41
    for (int k = 0; k < 2; ++k) {
      depths.push_back(recordOf(scene.depths[static_cast<std::size_t>(k)]));
      colors.push_back(recordOf(scene.colors[static_cast<std::size_t>(k)]));
    }
    buffer.assign(51 * 41 * 3, 0xA5);
    image.type = 12345; // not read
    image.width = 51;
    image.height = 41;
    image.data = buffer.data();
  }

  int run() {
    return ozkCvtDepthToAerialViewImg(
        hasDepths ? depths.data() : nullptr, isColored ? colors.data() : nullptr,
        hasIntrinsics ? scene.intrinsics.data() : nullptr,
        hasExtrinsics ? scene.extrinsics.data() : nullptr, cameraCount,
        hasRegion ? &scene.region : nullptr, scene.resolution, hasImage ? &image : nullptr);
  }

  bool isUntouched() const { return buffer == std::vector<unsigned char>(buffer.size(), 0xA5); }

  cv::Mat shown() const {
    return cv::Mat(41, 51, CV_8UC3, const_cast<unsigned char*>(buffer.data()));
  }
  cv::Mat expected() const {
    return plainAerialView(scene.depths.data(), isColored ? scene.colors.data() : nullptr,
                           scene.intrinsics.data(), scene.extrinsics.data(), cameraCount,
                           scene.region, scene.resolution);
  }
};

class AerialView : public TempDirTest {
 protected:
  // Runs a spoiled call and looks at what it leaves.
  void expectRefused(const std::function<void(Call&)>& spoil, int status,
                     const std::vector<std::string>& messages = {}) {
    std::filesystem::remove("velmorn.log");
    Call call;
    spoil(call);
    const ConsoleCapture console;
    EXPECT_EQ(call.run(), status);
    EXPECT_EQ(console.text(), "");
    EXPECT_EQ(logLines(), messages);
    EXPECT_TRUE(call.isUntouched());
  }
};

TEST_F(AerialView, GivesThePlainBytesWithoutAMessage) {
  const ConsoleCapture console;
  Call call;
  ASSERT_EQ(call.run(), kOzkSuccess);
  EXPECT_TRUE(haveEqualBytes(call.shown(), call.expected()));
  call.isColored = false;
  ASSERT_EQ(call.run(), kOzkSuccess);
  EXPECT_TRUE(haveEqualBytes(call.shown(), call.expected()));
  EXPECT_EQ(call.image.type, 12345U);
  EXPECT_EQ(call.image.data, call.buffer.data());
  EXPECT_EQ(console.text(), "");
  EXPECT_FALSE(std::filesystem::exists("velmorn.log"));
}

TEST_F(AerialView, FillsTheImageOfCreateAerialViewImg) {
  Call call;
  tagOzKImage image{};
  ASSERT_EQ(createAerialViewImg(&call.scene.region, 20, &image), kOzkSuccess);
  call.image = image;
  ASSERT_EQ(call.run(), kOzkSuccess);
  EXPECT_TRUE(haveEqualBytes(cv::Mat(41, 51, CV_8UC3, image.data), call.expected()));
  releaseAerialViewImg(&image);
}

TEST_F(AerialView, SwappedColoursAreSwappedBack) {
  Call call;
  cv::Mat& color = call.scene.colors[1];
  const cv::Mat given = color.clone();
  for (auto i = color.begin<cv::Vec3b>(); i != color.end<cv::Vec3b>(); ++i)
    std::swap((*i)[0], (*i)[2]);
  const cv::Mat expected = call.expected();
  call.colors[1] = recordOf(given);
  call.colors[1].type = kOzkImageThreeChannelsSwapped;
  const cv::Mat copy = given.clone();
  ASSERT_EQ(call.run(), kOzkSuccess);
  EXPECT_TRUE(haveEqualBytes(call.shown(), expected));
  EXPECT_TRUE(haveEqualBytes(given, copy));
}

TEST_F(AerialView, OneCameraNeedsNoExtrinsics) {
  Call call;
  call.cameraCount = 1;
  call.hasExtrinsics = false;
  ASSERT_EQ(call.run(), kOzkSuccess);
  EXPECT_TRUE(haveEqualBytes(call.shown(), call.expected()));
}

TEST_F(AerialView, BufferMayBeAnInput) {
  for (const bool isColored : {true, false}) {
    Call call;
    call.isColored = isColored;
    const cv::Mat expected = call.expected();
    // The depth image and the colours of camera 0 lie in the output's buffer, which is larger.
    std::memcpy(call.buffer.data() + 2000, call.depths[0].data, 50 * 40 * 2);
    call.depths[0].data = call.buffer.data() + 2000;
    ASSERT_EQ(call.run(), kOzkSuccess);
    EXPECT_TRUE(haveEqualBytes(call.shown(), expected));
  }
  Call call;
  const cv::Mat expected = call.expected();
  std::memcpy(call.buffer.data(), call.colors[1].data, 50 * 40 * 3);
  call.colors[1].data = call.buffer.data();
  ASSERT_EQ(call.run(), kOzkSuccess);
  EXPECT_TRUE(haveEqualBytes(call.shown(), expected));
}

TEST_F(AerialView, ImagesWithoutPixelsAreFine) {
  for (const std::uint32_t type : {kOzkImageThreeChannels, kOzkImageThreeChannelsSwapped}) {
    Call call;
    for (tagOzKImage* image : {&call.depths[0], &call.colors[0]}) {
      image->width = 0;
      image->data = nullptr;
    }
    call.colors[0].type = type;
    ASSERT_EQ(call.run(), kOzkSuccess);
    call.scene.depths[0] = cv::Mat(40, 0, CV_16UC1);
    EXPECT_TRUE(haveEqualBytes(call.shown(), call.expected()));
  }
  Call call; // a grid without columns needs no buffer
  call.scene.region = {30, 0, 0, 100};
  call.image.width = 0;
  call.image.height = 6;
  call.image.data = nullptr;
  EXPECT_EQ(call.run(), kOzkSuccess);
}

TEST_F(AerialView, NullPointersAreRefused) {
  expectRefused(
      [](Call& c) {
        c.hasDepths = false;
        c.cameraCount = 0;
      },
      kOzkNullPointer);
  expectRefused(
      [](Call& c) {
        c.hasIntrinsics = false;
        c.cameraCount = 0;
      },
      kOzkNullPointer);
  expectRefused(
      [](Call& c) {
        c.hasImage = false;
        c.cameraCount = 0;
      },
      kOzkNullPointer);
  expectRefused(
      [](Call& c) {
        c.hasRegion = false;
        c.cameraCount = 0;
      },
      kOzkNullPointer);
  expectRefused(
      [](Call& c) {
        c.hasExtrinsics = false;
        c.scene.resolution = 0;
      },
      kOzkNullPointer);
  expectRefused([](Call& c) { c.depths[1].data = nullptr; }, kOzkNullPointer);
  expectRefused([](Call& c) { c.colors[1].data = nullptr; }, kOzkNullPointer);
  expectRefused([](Call& c) { c.image.data = nullptr; }, kOzkNullPointer);
}

TEST_F(AerialView, CountResolutionAndGridAreRefusedWithoutAMessage) {
  expectRefused(
      [](Call& c) {
        c.cameraCount = 0;
        c.depths[0].type = 0;
      },
      kOzkBadSize);
  expectRefused(
      [](Call& c) {
        c.cameraCount = -1;
        c.hasExtrinsics = false;
      },
      kOzkBadSize);
  for (const float resolution : {0.0F, -1.0F, std::nanf("")})
    expectRefused(
        [&](Call& c) {
          c.scene.resolution = resolution;
          c.depths[0].type = 0;
        },
        kOzkBadSize);
  expectRefused([](Call& c) { c.scene.resolution = 1e-5F; }, kOzkBadSize);
  expectRefused([](Call& c) { c.scene.region = {500, -400, -500, 400}; }, kOzkBadSize);
  expectRefused([](Call& c) { c.scene.region.y2 = std::nanf(""); }, kOzkBadSize);
}

TEST_F(AerialView, DepthImagesAreCheckedOneAfterTheOther) {
  const std::vector<std::string> dataType{"depth image dataType error"};
  const std::vector<std::string> type{"depth image type error"};
  expectRefused(
      [](Call& c) {
        c.depths[0].dataType = 0;
        c.depths[0].type = 0;
      },
      kOzkBadDataType, dataType);
  expectRefused(
      [](Call& c) {
        c.depths[0].type = 512;
        c.depths[0].data = nullptr;
      },
      kOzkBadImageType, type);
  expectRefused(
      [](Call& c) {
        c.depths[0].type = 512;
        c.depths[1].dataType = 0;
      },
      kOzkBadImageType, type);
  expectRefused(
      [](Call& c) {
        c.depths[0].data = nullptr;
        c.depths[1].dataType = 0;
      },
      kOzkNullPointer);
  expectRefused(
      [](Call& c) {
        c.depths[1].dataType = 2;
        c.colors[0].type = 0;
      },
      kOzkBadDataType, dataType);
  expectRefused(
      [](Call& c) {
        c.depths[0].width = 0x80000000U;
        c.depths[1].type = 0;
      },
      kOzkBadSize);
}

TEST_F(AerialView, ColorImagesAreCheckedOneAfterTheOther) {
  const std::vector<std::string> size{"depth image size is diffrent with color image"};
  const std::vector<std::string> dataType{"color image dataType error"};
  const std::vector<std::string> type{"color image type error"};
  expectRefused(
      [](Call& c) {
        c.colors[0].width = 49;
        c.colors[0].dataType = 5;
      },
      kOzkBadSize, size);
  expectRefused(
      [](Call& c) {
        c.colors[1].height = 41;
        c.colors[1].type = 0;
      },
      kOzkBadSize, size);
  expectRefused(
      [](Call& c) {
        c.colors[0].dataType = 5;
        c.colors[0].type = 0;
      },
      kOzkBadDataType, dataType);
  expectRefused(
      [](Call& c) {
        c.colors[0].type = 258;
        c.colors[0].data = nullptr;
      },
      kOzkBadImageType, type);
  expectRefused([](Call& c) { c.colors[1].type = 256; }, kOzkBadImageType, type);
  expectRefused(
      [](Call& c) {
        c.colors[0].data = nullptr;
        c.colors[1].type = 0;
      },
      kOzkNullPointer);
}

TEST_F(AerialView, WrongImageSizeIsNoticedLast) {
  const std::vector<std::string> size{"input aerialViewImg size error"};
  expectRefused([](Call& c) { c.image.width = 50; }, kOzkBadSize, size);
  expectRefused(
      [](Call& c) {
        c.image.height = 42;
        c.image.data = nullptr;
      },
      kOzkBadSize, size);
  expectRefused(
      [](Call& c) {
        c.image.width = 50;
        c.isColored = false;
      },
      kOzkBadSize, size);
  expectRefused(
      [](Call& c) {
        c.image.width = 50;
        c.colors[1].type = 0;
      },
      kOzkBadImageType, {"color image type error"});
  expectRefused(
      [](Call& c) {
        c.image.width = 50;
        c.scene.resolution = 1e-5F;
      },
      kOzkBadSize);
}

TEST_F(AerialView, ColorsAreNotLookedAtWhenThereAreNone) {
  Call call;
  call.isColored = false;
  call.colors[0].type = 0;
  EXPECT_EQ(call.run(), kOzkSuccess);
}

} // namespace
} // namespace velmorn
