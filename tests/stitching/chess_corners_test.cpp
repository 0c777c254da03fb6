#include "stitching/chess_corners.h"

#include <cmath>
#include <filesystem>
#include <regex>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <opencv2/calib3d.hpp>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include "stitching/board_files.h"
#include "support/synthetic_rig.h"
#include "support/temp_dir.h"

namespace velmorn {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Key;

constexpr std::size_t kBoardCorners = 20; // of the small board
const cv::Size kOtherSize(400, 300);

class ChessCorners : public TempDirTest {
 protected:
  // The corners of the small board; what went to the console is in `console`.
  CornerMap find(const ImagePathMap& paths) {
    const ConsoleCapture capture;
    CornerMap corners;
    findChessCornerPtByImgs(paths, corners, smallBoard().patternSize(), false);
    console = capture.text();
    return corners;
  }

  std::string console;
};

std::vector<std::size_t> countsOf(const std::vector<std::vector<cv::Point2f>>& lists) {
  std::vector<std::size_t> counts;
  for (const auto& list : lists) counts.push_back(list.size());
  return counts;
}

double rmsDistance(const std::vector<cv::Point2f>& a, const std::vector<cv::Point2f>& b) {
  double sum = 0;
  for (std::size_t i = 0; i < a.size(); ++i) sum += (a[i] - b[i]).dot(a[i] - b[i]);
  return std::sqrt(sum / static_cast<double>(a.size()));
}

TEST_F(ChessCorners, RenderedCornersAreFoundInOrderAndPlace) {
  RigOptions options;
  options.shotsPerGroup = 10;
  options.imageSize = {960, 720}; // squares stay wider than the window of the refinement
  options.focal = 768;
  const SyntheticRig rig = makeRig(options);
  const ImageEffects clean{0.9}; // edges a little soft, as any lens gives them
  CornerMap corners;
  const ConsoleCapture quiet;
  findChessCornerPtByImgs(rig.writeImages(dir() / "images", clean), corners,
                          rig.board.patternSize(), false);
  const CornerMap truth = rig.cornerMap(0);
  for (const std::string& id : rig.ids) {
    ASSERT_EQ(countsOf(corners[id]), std::vector<std::size_t>(10, 54)) << id;
    for (std::size_t j = 0; j < 10; ++j)
      EXPECT_LT(rmsDistance(corners[id][j], truth.at(id)[j]), 0.05) << id << " image " << j;
  }
}

TEST_F(ChessCorners, CornersAreOpencvsToTheBit) {
  const ImageEffects noisy{0.7, 4};
  for (int variant = 0; variant < 4; ++variant) {
    const cv::Mat image = takePhoto({320, 240}, variant, smallBoard(), noisy).image;
    ASSERT_TRUE(cv::imwrite("photo.png", image));
    const auto expected = searchWithOpencv(image, cv::Size(5, 4));
    ASSERT_EQ(expected.size(), kBoardCorners);
    EXPECT_EQ(find({{"cam", {"photo.png"}}})["cam"][0], expected);
  }
}

TEST_F(ChessCorners, ColourAndSixteenBitImagesAreReadAsGrey) {
  const cv::Mat grey = takePhoto().image;
  cv::Mat colour, deep;
  cv::cvtColor(grey, colour, cv::COLOR_GRAY2BGR);
  grey.convertTo(deep, CV_16U, 256);
  ASSERT_TRUE(cv::imwrite("grey.png", grey));
  ASSERT_TRUE(cv::imwrite("colour.png", colour));
  ASSERT_TRUE(cv::imwrite("deep.png", deep));
  const auto lists = find({{"cam", {"grey.png", "colour.png", "deep.png"}}})["cam"];
  EXPECT_EQ(countsOf(lists),
            (std::vector<std::size_t>{kBoardCorners, kBoardCorners, kBoardCorners}));
  EXPECT_EQ(lists[0], lists[1]);
  EXPECT_EQ(lists[0], lists[2]);
}

TEST_F(ChessCorners, FoundBoardIsReportedOnTheConsoleOnly) {
  writePhoto("photo.png");
  find({{"cam", {"photo.png"}}});
  EXPECT_EQ(console, "find corner: photo.png\nsuccess\n");
  EXPECT_FALSE(std::filesystem::exists("velmorn.log"));
}

TEST_F(ChessCorners, ImageWithoutBoardIsReportedOnTheConsoleOnly) {
  writeBlank("blank.png");
  EXPECT_THAT(find({{"cam", {"blank.png"}}})["cam"], ElementsAre(IsEmpty()));
  EXPECT_EQ(console, "find corner: blank.png\nfailed\n");
  EXPECT_FALSE(std::filesystem::exists("velmorn.log"));
}

TEST_F(ChessCorners, BoardThatLeavesTheImageIsNotFound) {
  const cv::Mat image = takePhoto().image;
  ASSERT_TRUE(cv::imwrite("half.png", image.colRange(0, image.cols / 2)));
  EXPECT_THAT(find({{"cam", {"half.png"}}})["cam"], ElementsAre(IsEmpty()));
  EXPECT_EQ(console, "find corner: half.png\nfailed\n");
}

TEST_F(ChessCorners, CamerasAreTakenInKeyOrder) {
  writePhoto("a.png");
  writeBlank("b.png");
  const ImagePathMap paths = {{"right", {"b.png"}}, {"left", {"a.png"}}, {"Upper", {"b.png"}}};
  EXPECT_THAT(find(paths), ElementsAre(Key("Upper"), Key("left"), Key("right")));
  EXPECT_EQ(console,
            "find corner: b.png\nfailed\n"
            "find corner: a.png\nsuccess\n"
            "find corner: b.png\nfailed\n");
}

TEST_F(ChessCorners, CameraWithoutImagesGetsAnEmptyList) {
  const CornerMap corners = find({{"cam", {}}});
  ASSERT_EQ(corners.count("cam"), 1U);
  EXPECT_THAT(corners.at("cam"), IsEmpty());
  EXPECT_EQ(console, "");
}

TEST_F(ChessCorners, OutputIsClearedOnEntry) {
  CornerMap corners = {{"stale", {{{1, 2}}}}};
  const ConsoleCapture quiet;
  findChessCornerPtByImgs({}, corners, smallBoard().patternSize(), false);
  EXPECT_THAT(corners, IsEmpty());
}

TEST_F(ChessCorners, SecondFileMissingLeavesItsListEmpty) {
  writePhoto("0.png", {320, 240}, 0);
  writePhoto("2.png", {320, 240}, 2);
  const auto lists = find({{"cam", {"0.png", "1.png", "2.png"}}})["cam"];
  EXPECT_EQ(countsOf(lists), (std::vector<std::size_t>{kBoardCorners, 0, kBoardCorners}));
  EXPECT_EQ(console,
            "find corner: 0.png\nsuccess\n"
            "find corner: 1.png\nload 1.png failed\n"
            "find corner: 2.png\nsuccess\n");
  EXPECT_THAT(logLines(), ElementsAre("load 1.png failed"));
}

TEST_F(ChessCorners, FirstReadableImageSetsTheSize) {
  writePhoto("1.png", kOtherSize);
  writePhoto("2.png");
  writePhoto("3.png", kOtherSize);
  const auto lists = find({{"cam", {"0.png", "1.png", "2.png", "3.png"}}})["cam"];
  EXPECT_EQ(countsOf(lists), (std::vector<std::size_t>{0, kBoardCorners, 0, kBoardCorners}));
  EXPECT_EQ(console,
            "find corner: 0.png\nload 0.png failed\n"
            "find corner: 1.png\nsuccess\n"
            "find corner: 2.png\nimage size is error\n"
            "find corner: 3.png\nsuccess\n");
  EXPECT_THAT(logLines(), ElementsAre("load 0.png failed", "image size is error"));
}

TEST_F(ChessCorners, ImageWithoutBoardSetsTheSizeToo) {
  writeBlank("0.png", kOtherSize);
  writePhoto("1.png");
  EXPECT_THAT(find({{"cam", {"0.png", "1.png"}}})["cam"], ElementsAre(IsEmpty(), IsEmpty()));
  EXPECT_EQ(console, "find corner: 0.png\nfailed\nfind corner: 1.png\nimage size is error\n");
}

TEST_F(ChessCorners, WidthOrHeightMakesAnotherSize) {
  writePhoto("0.png");
  const cv::Mat image = takePhoto().image;
  ASSERT_TRUE(cv::imwrite("narrower.png", image.colRange(0, image.cols - 1)));
  ASSERT_TRUE(cv::imwrite("lower.png", image.rowRange(0, image.rows - 1)));
  ASSERT_TRUE(cv::imwrite("turned.png", image.t()));
  const auto lists = find({{"cam", {"0.png", "narrower.png", "lower.png", "turned.png"}}})["cam"];
  EXPECT_EQ(countsOf(lists), (std::vector<std::size_t>{kBoardCorners, 0, 0, 0}));
  EXPECT_THAT(logLines(),
              ElementsAre("image size is error", "image size is error", "image size is error"));
}

TEST_F(ChessCorners, CamerasMayDifferInSize) {
  writePhoto("a.png");
  writePhoto("b.png", kOtherSize);
  CornerMap corners = find({{"a", {"a.png", "a.png"}}, {"b", {"b.png", "a.png"}}});
  EXPECT_EQ(countsOf(corners["a"]), (std::vector<std::size_t>{kBoardCorners, kBoardCorners}));
  EXPECT_EQ(countsOf(corners["b"]), (std::vector<std::size_t>{kBoardCorners, 0}));
  EXPECT_THAT(logLines(), ElementsAre("image size is error"));
}

// A list with repetitions against the same list with a copy of its own for every entry.
TEST_F(ChessCorners, RepeatedPathComesOutAsIfReadAgain) {
  writePhoto("p.png");
  writePhoto("q.png", {320, 240}, 1);
  writePhoto("w.png", kOtherSize);
  writeBlank("z.png");
  const std::vector<std::string> repeated = {"no.png", "p.png", "w.png",  "z.png", "q.png", "p.png",
                                             "w.png",  "p.png", "no.png", "z.png", "q.png"};
  std::vector<std::string> copies;
  for (std::size_t j = 0; j < repeated.size(); ++j) {
    copies.push_back(std::string(1, static_cast<char>('a' + j)) + "-" + repeated[j]);
    if (repeated[j] != "no.png") std::filesystem::copy_file(repeated[j], copies[j]);
  }
  const std::regex copyPrefix("[a-k]-");
  const auto expected = find({{"cam", copies}})["cam"];
  const std::string expectedConsole = std::regex_replace(console, copyPrefix, "");
  std::filesystem::remove("velmorn.log");

  EXPECT_EQ(find({{"cam", repeated}})["cam"], expected);
  EXPECT_EQ(countsOf(expected), (std::vector<std::size_t>{0, 20, 0, 0, 20, 20, 0, 20, 0, 0, 20}));
  EXPECT_EQ(console, expectedConsole);
  EXPECT_THAT(logLines(), ElementsAre("load no.png failed", "image size is error",
                                      "image size is error", "load no.png failed"));
}

TEST_F(ChessCorners, SameFileInTwoCamerasIsSearchedForBoth) {
  writePhoto("p.png");
  CornerMap corners = find({{"a", {"p.png"}}, {"b", {"p.png"}}});
  EXPECT_EQ(corners["a"][0].size(), kBoardCorners);
  EXPECT_EQ(corners["a"], corners["b"]);
  EXPECT_EQ(console, "find corner: p.png\nsuccess\nfind corner: p.png\nsuccess\n");
}

TEST_F(ChessCorners, PathIsNeverAFormat) {
  find({{"cam", {"100%s%n%d.png"}}});
  EXPECT_EQ(console, "find corner: 100%s%n%d.png\nload 100%s%n%d.png failed\n");
  EXPECT_THAT(logLines(), ElementsAre("load 100%s%n%d.png failed"));
}

TEST_F(ChessCorners, LongPathIsReportedWhole) {
  const std::string path(3000, 'x');
  find({{"cam", {path}}});
  EXPECT_EQ(console, "find corner: " + path + "\nload " + path + " failed\n");
  EXPECT_THAT(logLines(), ElementsAre("load " + path + " failed"));
}

TEST_F(ChessCorners, PatternThatOpencvRefusesThrowsAtTheFirstImage) {
  writePhoto("p.png");
  for (const tagOzKSize pattern : {tagOzKSize{2, 2}, {0, 0}, {-1, 5}, {5, 2}, {2, 5}}) {
    const ConsoleCapture capture;
    CornerMap corners;
    EXPECT_THROW(
        findChessCornerPtByImgs({{"cam", {"no.png", "p.png", "p.png"}}}, corners, pattern, false),
        cv::Exception)
        << pattern.width << " x " << pattern.height;
    EXPECT_EQ(capture.text(), "find corner: no.png\nload no.png failed\nfind corner: p.png\n");
  }
}

TEST_F(ChessCorners, PatternIsNotLookedAtWithoutAReadableImage) {
  CornerMap corners;
  const ConsoleCapture quiet;
  findChessCornerPtByImgs({{"cam", {"no.png"}}}, corners, {0, 0}, false);
  EXPECT_THAT(corners["cam"], ElementsAre(IsEmpty()));
}

} // namespace
} // namespace velmorn
