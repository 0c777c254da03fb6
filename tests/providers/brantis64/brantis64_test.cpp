// The extractor's C functions.
#include <cmath>
#include <memory>

#include <gtest/gtest.h>

#include "brantis64/extractor_status.h"
#include "common/provider_boundary.h"
#include "datacode/imported_libraries.h"
#include "providers/brantis64/board_view.h"

namespace velmorn::brantis {
namespace {

using provider::kBadArgument;
using provider::kBadImage;

class Brantis64 : public testing::Test {
 protected:
  Brantis64() : view_(makeView({})) {
    record_.width = 640;
    record_.height = 480;
    record_.type = kOzkImageOneChannel;
    record_.dataType = kOzkSample8U;
    record_.data = view_.image.data;
    const auto seeds = view_.seedsOf(view_.centralSquare());
    seed_->count = 4;
    for (std::size_t k = 0; k < 4; ++k) {
      seed_->column[k] = seeds[k].pixel.x;
      seed_->row[k] = seeds[k].pixel.y;
      seed_->worldX[k] = seeds[k].onBoard.x;
      seed_->worldY[k] = seeds[k].onBoard.y;
    }
    result_->count = -5;
    const DataCodeImageSize size{640, 480};
    EXPECT_EQ(calibCreate(&handle_, &size), 0);
  }
  ~Brantis64() override { calibRelease(handle_); }

  std::int32_t extract() {
    return calibCornerExtractExt(handle_, &record_, seed_.get(), result_.get());
  }

  BoardView view_;
  tagOzKImage record_{};
  std::unique_ptr<CalibCornerSet> seed_ = std::make_unique<CalibCornerSet>();
  std::unique_ptr<CalibCornerSet> result_ = std::make_unique<CalibCornerSet>();
  void* handle_ = nullptr;
};

TEST_F(Brantis64, FillsTheResult) {
  ASSERT_EQ(extract(), 0);
  std::vector<BoardCorner> expected;
  ASSERT_EQ(extractCorners(view_.image, view_.seedsOf(view_.centralSquare()), expected), 0);
  ASSERT_EQ(result_->count, static_cast<int>(expected.size()));
  ASSERT_GT(result_->count, 200);
  for (int i = 0; i < result_->count; ++i) {
    const BoardCorner& corner = expected[static_cast<std::size_t>(i)];
    // The first pixel's centre is at (0.5, 0.5).
    EXPECT_EQ(result_->column[i], corner.pixel.x + 0.5F);
    EXPECT_EQ(result_->row[i], corner.pixel.y + 0.5F);
    EXPECT_EQ(result_->worldX[i], corner.onBoard.x);
    EXPECT_EQ(result_->worldY[i], corner.onBoard.y);
  }
}

TEST_F(Brantis64, IgnoresTheConfiguredSquareSize) {
  ASSERT_EQ(extract(), 0);
  const int count = result_->count;
  for (const int size : {0, 12, 20, -3}) {
    CalibConfig config{};
    ASSERT_EQ(calibGetConfig(handle_, &config), 0);
    config.squareSizeA = config.squareSizeB = size;
    ASSERT_EQ(calibSetConfig(handle_, &config), 0);
    ASSERT_EQ(extract(), 0);
    EXPECT_EQ(result_->count, count);
  }
}

TEST_F(Brantis64, KeepsTheConfiguration) {
  CalibConfig config{};
  config.squareSizeA = 12;
  config.squareSizeB = 13;
  config.reservedA[0] = 4;
  config.reservedB[111] = 7;
  ASSERT_EQ(calibSetConfig(handle_, &config), 0);
  CalibConfig back{};
  ASSERT_EQ(calibGetConfig(handle_, &back), 0);
  EXPECT_EQ(back.squareSizeA, 12);
  EXPECT_EQ(back.squareSizeB, 13);
  EXPECT_EQ(back.reservedA[0], 4);
  EXPECT_EQ(back.reservedB[111], 7);
}

TEST_F(Brantis64, RefusesImagesOtherThanTheHandles) {
  record_.width = 639;
  EXPECT_EQ(extract(), kBadImage);
  record_.width = 640;
  record_.type = static_cast<decltype(record_.type)>(record_.type + 1);
  EXPECT_EQ(extract(), kBadImage);
  record_.type = kOzkImageOneChannel;
  record_.data = nullptr;
  EXPECT_EQ(extract(), kBadImage);
  EXPECT_EQ(calibCornerExtractExt(handle_, nullptr, seed_.get(), result_.get()), kBadImage);
  EXPECT_EQ(result_->count, -5);
}

TEST_F(Brantis64, RefusesBadSeeds) {
  seed_->count = 3;
  EXPECT_EQ(extract(), kBadArgument);
  seed_->count = 512;
  EXPECT_EQ(extract(), kBadArgument);
  seed_->count = 4;
  seed_->worldX[2] = seed_->worldX[1];
  EXPECT_EQ(extract(), kNoUnitSquare);
  seed_->worldX[2] = std::nanf("");
  EXPECT_EQ(extract(), kNoUnitSquare);
  EXPECT_EQ(result_->count, -5);
}

TEST_F(Brantis64, RefusesNullPointers) {
  const DataCodeImageSize size{640, 480};
  void* handle = nullptr;
  CalibConfig config{};
  EXPECT_EQ(calibCreate(nullptr, &size), kBadArgument);
  EXPECT_EQ(calibCreate(&handle, nullptr), kBadArgument);
  EXPECT_EQ(calibGetConfig(nullptr, &config), kBadArgument);
  EXPECT_EQ(calibGetConfig(handle_, nullptr), kBadArgument);
  EXPECT_EQ(calibSetConfig(nullptr, &config), kBadArgument);
  EXPECT_EQ(calibSetConfig(handle_, nullptr), kBadArgument);
  EXPECT_EQ(calibCornerExtractExt(nullptr, &record_, seed_.get(), result_.get()), kBadArgument);
  EXPECT_EQ(calibCornerExtractExt(handle_, &record_, nullptr, result_.get()), kBadArgument);
  EXPECT_EQ(calibCornerExtractExt(handle_, &record_, seed_.get(), nullptr), kBadArgument);
  EXPECT_EQ(calibRelease(nullptr), kBadArgument);
}

TEST_F(Brantis64, RefusesImageSizesOfNothing) {
  void* handle = nullptr;
  for (const DataCodeImageSize size : {DataCodeImageSize{0, 480}, {640, 0}, {-1, -1}})
    EXPECT_EQ(calibCreate(&handle, &size), kBadImage);
  EXPECT_EQ(handle, nullptr);
}

} // namespace
} // namespace velmorn::brantis
