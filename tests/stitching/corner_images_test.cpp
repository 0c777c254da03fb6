// The annotated images that the corner search leaves in "chessImgs/".
#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <opencv2/calib3d.hpp>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include "stitching/board_files.h"
#include "stitching/chess_corners.h"
#include "support/temp_dir.h"

namespace velmorn {
namespace {

namespace fs = std::filesystem;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

class CornerImages : public TempDirTest {
 protected:
  void SetUp() override { writePhoto("photo.png"); }

  CornerMap find(const ImagePathMap& paths, bool save = true) {
    const ConsoleCapture capture;
    CornerMap corners;
    findChessCornerPtByImgs(paths, corners, smallBoard().patternSize(), save);
    console = capture.text();
    return corners;
  }

  // The board must be found and reported whether or not its picture can be written.
  void expectFound(const std::string& camID) {
    EXPECT_EQ(find({{camID, {"photo.png"}}})[camID].at(0).size(), 20U);
    EXPECT_EQ(console, "find corner: photo.png\nsuccess\n");
    EXPECT_FALSE(fs::exists("velmorn.log"));
  }

  std::string console;
};

std::vector<std::string> namesIn(const fs::path& folder) {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(folder))
    names.push_back(entry.path().filename().string());
  return names;
}

TEST_F(CornerImages, FoundBoardIsWrittenUnderIndexAndCamera) {
  find({{"cam1", {"photo.png"}}});
  EXPECT_THAT(namesIn("chessImgs"), UnorderedElementsAre("corner-000-cam1.bmp"));
}

TEST_F(CornerImages, FlagClearMakesNoFolder) {
  find({{"cam1", {"photo.png"}}}, false);
  EXPECT_THAT(namesIn("."), UnorderedElementsAre("photo.png"));
}

TEST_F(CornerImages, NoFolderWithoutAFoundBoard) {
  writeBlank("blank.png");
  writePhoto("other.png", {400, 300});
  find({{"cam1", {"blank.png", "missing.png", "other.png"}}});
  EXPECT_FALSE(fs::exists("chessImgs"));
}

TEST_F(CornerImages, ImageIsTheBitmapWithTheCornersDrawn) {
  const CornerMap corners = find({{"cam1", {"photo.png"}}});
  cv::Mat expected;
  cv::cvtColor(takePhoto().image, expected, cv::COLOR_GRAY2BGR);
  cv::drawChessboardCorners(expected, cv::Size(5, 4), corners.at("cam1")[0], true);
  ASSERT_TRUE(cv::imwrite("expected.bmp", expected));
  EXPECT_TRUE(readFile("chessImgs/corner-000-cam1.bmp") == readFile("expected.bmp"));
}

TEST_F(CornerImages, NameHoldsHundredsTensAndUnits) {
  std::vector<std::string> paths(1235, "missing.png");
  for (const std::size_t index : {7U, 10U, 99U, 123U, 1000U, 1234U}) paths[index] = "photo.png";
  find({{"c", paths}});
  EXPECT_THAT(namesIn("chessImgs"),
              UnorderedElementsAre("corner-007-c.bmp", "corner-010-c.bmp", "corner-099-c.bmp",
                                   "corner-123-c.bmp", "corner-1000-c.bmp", "corner-1234-c.bmp"));
}

TEST_F(CornerImages, RepeatedPathIsWrittenForEveryIndex) {
  writePhoto("other.png", {320, 240}, 3);
  find({{"c", {"photo.png", "other.png", "photo.png", "photo.png", "other.png"}}});
  EXPECT_EQ(namesIn("chessImgs").size(), 5U);
  const std::string photo = readFile("chessImgs/corner-000-c.bmp");
  const std::string other = readFile("chessImgs/corner-001-c.bmp");
  EXPECT_FALSE(photo == other);
  EXPECT_TRUE(photo == readFile("chessImgs/corner-002-c.bmp"));
  EXPECT_TRUE(photo == readFile("chessImgs/corner-003-c.bmp"));
  EXPECT_TRUE(other == readFile("chessImgs/corner-004-c.bmp"));
}

TEST_F(CornerImages, EveryCameraHasItsOwn) {
  find({{"a", {"photo.png"}}, {"b", {"photo.png"}}});
  EXPECT_THAT(namesIn("chessImgs"), UnorderedElementsAre("corner-000-a.bmp", "corner-000-b.bmp"));
}

TEST_F(CornerImages, ExistingFolderKeepsItsOtherFiles) {
  fs::create_directory("chessImgs");
  writeFile("chessImgs/note.txt", "kept");
  writeFile("chessImgs/corner-000-c.bmp", "replaced");
  find({{"c", {"photo.png"}}});
  EXPECT_EQ(readFile("chessImgs/note.txt"), "kept");
  EXPECT_EQ(readFile("chessImgs/corner-000-c.bmp").substr(0, 2), "BM");
}

TEST_F(CornerImages, FileInPlaceOfTheFolderIsNotReported) {
  writeFile("chessImgs", "in the way");
  expectFound("c");
  EXPECT_EQ(readFile("chessImgs"), "in the way");
}

TEST_F(CornerImages, DirectoryInPlaceOfTheImageIsNotReported) {
  fs::create_directories("chessImgs/corner-000-c.bmp");
  expectFound("c");
  EXPECT_THAT(namesIn("chessImgs/corner-000-c.bmp"), IsEmpty());
}

TEST_F(CornerImages, WorkingDirectoryThatIsGoneIsNotReported) {
  fs::create_directory("gone");
  fs::current_path("gone");
  fs::remove(dir() / "gone");
  const std::string photo = (dir() / "photo.png").string();
  EXPECT_EQ(find({{"c", {photo}}})["c"].at(0).size(), 20U);
  EXPECT_EQ(console, "find corner: " + photo + "\nsuccess\n");
  fs::current_path(dir());
}

TEST_F(CornerImages, PercentSignsAndBlanksInTheIdentifierStayText) {
  expectFound("100%s%n %d");
  EXPECT_THAT(namesIn("chessImgs"), UnorderedElementsAre("corner-000-100%s%n %d.bmp"));
}

TEST_F(CornerImages, SlashInTheIdentifierNamesAFolderThatIsNotMade) {
  expectFound("left/upper");
  EXPECT_THAT(namesIn("chessImgs"), IsEmpty());
}

TEST_F(CornerImages, SlashInTheIdentifierReachesAFolderThatExists) {
  fs::create_directories("chessImgs/corner-000-left");
  expectFound("left/upper");
  EXPECT_THAT(namesIn("chessImgs/corner-000-left"), UnorderedElementsAre("upper.bmp"));
}

TEST_F(CornerImages, LongestNameOfTheFileSystemIsWritten) {
  const std::string camID(255 - std::string("corner-000-.bmp").size(), 'x');
  expectFound(camID);
  EXPECT_THAT(namesIn("chessImgs"), UnorderedElementsAre("corner-000-" + camID + ".bmp"));
}

TEST_F(CornerImages, IdentifierTooLongForAFileNameIsNotReported) {
  expectFound(std::string(511, 'x'));
  EXPECT_THAT(namesIn("chessImgs"), IsEmpty());
}

TEST_F(CornerImages, IdentifierOfAnyLengthOverrunsNothing) {
  expectFound(std::string(100000, '/'));
  EXPECT_THAT(namesIn("chessImgs"), IsEmpty());
}

} // namespace
} // namespace velmorn
