// Files that are no proper image: the corner search drops their position and goes on.
#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <opencv2/imgcodecs.hpp>

#include "stitching/board_files.h"
#include "stitching/chess_corners.h"
#include "support/temp_dir.h"

namespace velmorn {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class BadImageFiles : public TempDirTest {
 protected:
  void SetUp() override { writePhoto("good.png"); }

  // Searches the file, then a good one, which must be found whatever the first one was. Returns the
  // console's text about the first.
  std::string search(const std::string& path) {
    const ConsoleCapture capture;
    CornerMap corners;
    findChessCornerPtByImgs({{"bad", {path}}, {"good", {"good.png"}}}, corners,
                            smallBoard().patternSize(), true);
    EXPECT_THAT(corners["bad"], ElementsAre(IsEmpty()));
    EXPECT_EQ(corners["good"].at(0).size(), 20U);
    const std::string text = capture.text(), tail = "find corner: good.png\nsuccess\n";
    EXPECT_GE(text.size(), tail.size());
    EXPECT_EQ(text.substr(text.size() - tail.size()), tail);
    return text.substr(0, text.size() - tail.size());
  }

  void expectUnreadable(const std::string& path) {
    EXPECT_EQ(search(path), "find corner: " + path + "\nload " + path + " failed\n");
    EXPECT_THAT(logLines(), ElementsAre("load " + path + " failed"));
  }

  void expectNoBoard(const std::string& path) {
    EXPECT_EQ(search(path), "find corner: " + path + "\nfailed\n");
    EXPECT_THAT(logLines(), IsEmpty());
  }
};

TEST_F(BadImageFiles, EmptyPath) { expectUnreadable(""); }

TEST_F(BadImageFiles, Directory) {
  std::filesystem::create_directory("folder.png");
  expectUnreadable("folder.png");
}

TEST_F(BadImageFiles, ZeroLength) {
  writeFile("empty.png", "");
  expectUnreadable("empty.png");
}

TEST_F(BadImageFiles, Text) {
  writeFile("text.png", "no image at all, just some words\n");
  expectUnreadable("text.png");
}

TEST_F(BadImageFiles, SignatureAlone) {
  writeFile("signature.png", readFile("good.png").substr(0, 8));
  expectUnreadable("signature.png");
}

TEST_F(BadImageFiles, HeaderAlone) {
  constexpr std::size_t kSignatureAndHeader = 33;
  writeFile("header.png", readFile("good.png").substr(0, kSignatureAndHeader));
  expectUnreadable("header.png");
}

TEST_F(BadImageFiles, PixelsThatEndAtOnce) {
  writeFile("start.png", pngClaiming(320, 240));
  expectUnreadable("start.png");
}

TEST_F(BadImageFiles, TruncatedPng) {
  const std::string content = readFile("good.png");
  writeFile("truncated.png", content.substr(0, content.size() / 2));
  expectUnreadable("truncated.png");
}

TEST_F(BadImageFiles, DamagedPng) {
  std::string content = readFile("good.png");
  for (std::size_t i = content.size() / 3; i < content.size() / 2; ++i) content[i] ^= 0x5a;
  writeFile("damaged.png", content);
  expectUnreadable("damaged.png");
}

// The decoder hands out the part that it has.
TEST_F(BadImageFiles, TruncatedJpegShowsNoWholeBoard) {
  ASSERT_TRUE(cv::imwrite("whole.jpg", takePhoto().image));
  const std::string content = readFile("whole.jpg");
  writeFile("truncated.jpg", content.substr(0, content.size() / 2));
  expectNoBoard("truncated.jpg");
}

// OpenCV takes 2^30 pixels at most; it refuses more with an exception.
TEST_F(BadImageFiles, GiganticSizeClaimedAtTheLimit) {
  writeFile("gigantic.png", pngClaiming(1U << 15, 1U << 15));
  expectUnreadable("gigantic.png");
}

TEST_F(BadImageFiles, GiganticSizeClaimedBeyondTheLimit) {
  writeFile("gigantic.png", pngClaiming(1U << 16, 1U << 15));
  expectUnreadable("gigantic.png");
}

TEST_F(BadImageFiles, GiganticWidthClaimed) {
  writeFile("wide.png", pngClaiming(1U << 30, 1));
  expectUnreadable("wide.png");
}

TEST_F(BadImageFiles, OnePixel) {
  writeBlank("one.png", {1, 1});
  expectNoBoard("one.png");
}

TEST_F(BadImageFiles, SmallerThanTheRefinementsWindow) {
  writeBlank("small.png", {20, 20});
  expectNoBoard("small.png");
}

// A board of one pixel per square, which no search can resolve.
TEST_F(BadImageFiles, TinyBoard) {
  cv::Mat_<unsigned char> image(20, 20, static_cast<unsigned char>(255));
  for (int y = 0; y < 5; ++y)
    for (int x = 0; x < 6; ++x)
      if ((x + y) % 2 == 0) image(y + 7, x + 7) = 0;
  ASSERT_TRUE(cv::imwrite("tiny.png", image));
  expectNoBoard("tiny.png");
}

TEST_F(BadImageFiles, OneRowOrColumn) {
  writeBlank("row.png", {320, 1});
  expectNoBoard("row.png");
}

} // namespace
} // namespace velmorn
