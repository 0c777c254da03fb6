// The reader's C functions.
#include <cstring>
#include <string>

#include <gtest/gtest.h>

#include "datacode/imported_libraries.h"
#include "providers/quillet64/code_squares.h"

namespace velmorn::quillet {
namespace {

constexpr int kBadArgument = -1;
constexpr int kBadImage = -2;

tagOzKImage recordOf(cv::Mat& grey) {
  tagOzKImage image{};
  image.width = static_cast<decltype(image.width)>(grey.cols);
  image.height = static_cast<decltype(image.height)>(grey.rows);
  image.type = kOzkImageOneChannel;
  image.dataType = kOzkSample8U;
  image.data = grey.data;
  return image;
}

class Quillet64 : public testing::Test {
 protected:
  Quillet64() : seen_(boardView({})), image_(recordOf(seen_.grey)) {
    input_.image = &image_;
    EXPECT_EQ(dcCreate(&handle_, &size_), 0);
  }
  ~Quillet64() override { EXPECT_EQ(dcRelease(handle_), 0); }

  // The call fails with the code and leaves the output alone.
  void expectRefused(int code) {
    DataCodeOutput output;
    std::memset(&output, 0x5a, sizeof output);
    const DataCodeOutput before = output;
    EXPECT_EQ(dcProcess(handle_, &input_, &output), code);
    EXPECT_EQ(std::memcmp(&output, &before, sizeof output), 0);
  }

  BoardView seen_;
  tagOzKImage image_;
  DataCodeImageSize size_{640, 480};
  DataCodeInput input_{};
  void* handle_ = nullptr;
};

TEST_F(Quillet64, ReadsACode) {
  DataCodeOutput output{};
  ASSERT_EQ(dcProcess(handle_, &input_, &output), 0);
  ASSERT_EQ(output.count, 1);
  ASSERT_NE(output.items, nullptr);
  const DataCodeItem& item = output.items[0];
  EXPECT_TRUE(seen_.hasText(item.content)) << item.content;
  FoundCode code;
  code.text = item.content;
  for (std::size_t k = 0; k < 4; ++k)
    code.squareCorners[k] = cv::Point2f(static_cast<float>(item.corners[2 * k]),
                                        static_cast<float>(item.corners[2 * k + 1]));
  EXPECT_LT(seen_.cornerError(code), 1.2); // rounded to whole pixels
}

TEST_F(Quillet64, OutputStaysUntilRelease) {
  DataCodeOutput first{}, second{};
  ASSERT_EQ(dcProcess(handle_, &input_, &first), 0);
  ASSERT_EQ(first.count, 1);
  const std::string text = first.items[0].content;
  const std::int32_t corner = first.items[0].corners[0];

  cv::Mat empty(480, 640, CV_8UC1, cv::Scalar(128));
  tagOzKImage image = recordOf(empty);
  input_.image = &image;
  ASSERT_EQ(dcProcess(handle_, &input_, &second), 0);
  EXPECT_EQ(second.count, 0);
  EXPECT_EQ(second.items, nullptr);
  EXPECT_EQ(first.items[0].content, text);
  EXPECT_EQ(first.items[0].corners[0], corner);
}

TEST_F(Quillet64, ImagesThatAreNotTheHandlesAreRefused) {
  const tagOzKImage good = image_;
  image_.width = 639;
  expectRefused(kBadImage);
  image_ = good;
  image_.height = 481;
  expectRefused(kBadImage);
  image_ = good;
  image_.data = nullptr;
  expectRefused(kBadImage);
  image_ = good;
  image_.type = static_cast<decltype(image_.type)>(kOzkImageOneChannel + 1);
  expectRefused(kBadImage);
  image_ = good;
  image_.dataType = static_cast<decltype(image_.dataType)>(kOzkSample8U + 1);
  expectRefused(kBadImage);
  input_.image = nullptr;
  expectRefused(kBadImage);
}

TEST_F(Quillet64, NullArgumentsAreRefused) {
  DataCodeOutput output{};
  DataCodeConfig config{};
  void* other = nullptr;
  EXPECT_EQ(dcCreate(nullptr, &size_), kBadArgument);
  EXPECT_EQ(dcCreate(&other, nullptr), kBadArgument);
  EXPECT_EQ(dcProcess(nullptr, &input_, &output), kBadArgument);
  EXPECT_EQ(dcProcess(handle_, nullptr, &output), kBadArgument);
  EXPECT_EQ(dcProcess(handle_, &input_, nullptr), kBadArgument);
  EXPECT_EQ(dcGetConfig(nullptr, &config), kBadArgument);
  EXPECT_EQ(dcGetConfig(handle_, nullptr), kBadArgument);
  EXPECT_EQ(dcSetConfig(nullptr, &config), kBadArgument);
  EXPECT_EQ(dcSetConfig(handle_, nullptr), kBadArgument);
  EXPECT_EQ(dcRelease(nullptr), kBadArgument);
}

TEST_F(Quillet64, EmptySizesGetNoHandle) {
  void* other = &size_;
  for (const DataCodeImageSize size : {DataCodeImageSize{0, 480}, DataCodeImageSize{640, 0},
                                       DataCodeImageSize{-1, 480}, DataCodeImageSize{640, -1}})
    EXPECT_EQ(dcCreate(&other, &size), kBadImage);
  EXPECT_EQ(other, &size_);
}

TEST_F(Quillet64, ConfigurationComesBackByteByByte) {
  DataCodeConfig config{};
  ASSERT_EQ(dcGetConfig(handle_, &config), 0);
  std::memset(&config, 0x3c, sizeof config);
  config.field0 = 1;
  config.field56 = 30;
  config.field68 = 2;
  ASSERT_EQ(dcSetConfig(handle_, &config), 0);
  DataCodeConfig back{};
  ASSERT_EQ(dcGetConfig(handle_, &back), 0);
  EXPECT_EQ(std::memcmp(&config, &back, sizeof back), 0);
}

TEST_F(Quillet64, HandlesAreIndependent) {
  void* other = nullptr;
  const DataCodeImageSize size{3, 2};
  ASSERT_EQ(dcCreate(&other, &size), 0);
  EXPECT_NE(other, handle_);
  cv::Mat tiny(2, 3, CV_8UC1, cv::Scalar(7));
  tagOzKImage image = recordOf(tiny);
  DataCodeInput input{};
  input.image = &image;
  DataCodeOutput output{};
  EXPECT_EQ(dcProcess(other, &input, &output), 0);
  EXPECT_EQ(output.count, 0);
  EXPECT_EQ(dcRelease(other), 0);
  EXPECT_EQ(dcProcess(handle_, &input_, &output), 0);
  EXPECT_EQ(output.count, 1);
}

} // namespace
} // namespace velmorn::quillet
