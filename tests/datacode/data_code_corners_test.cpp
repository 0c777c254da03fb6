// The calls into the imported libraries, and what becomes of their outcome.
#include "datacode/data_code_corners.h"

#include <cmath>
#include <cstring>
#include <limits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "datacode/fake_libraries.h"
#include "support/temp_dir.h"

namespace velmorn {
namespace {

using fake::Shot;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

const std::vector<std::string> kAllCalls = {
    "dcCreate",       "dcGetConfig",    "dcSetConfig",           "dcProcess", "calibCreate",
    "calibGetConfig", "calibSetConfig", "calibCornerExtractExt", "dcRelease", "calibRelease"};
const std::vector<std::string> kMessages = {"finded code is 3,5,20",
                                            "parsed code content is (3,5),(20.000000,20.000000)"};

class DataCodeCorners : public TempDirTest {
 protected:
  DataCodeCorners() {
    image.type = kOzkImageOneChannel;
    image.width = 640;
    image.height = 480;
    for (int i = 0; i < 3; ++i) {
      const float f = static_cast<float>(i);
      shot.corners.push_back({100 + f, 200 + f, 20 * f, 40 + f});
    }
  }

  // Runs the inner function on vectors that hold something already.
  int find(const Shot& script) {
    fake::play({script});
    imagePts = {{-1, -2}};
    worldPts = {{-3, -4, -5}};
    const ConsoleCapture capture;
    const int status = findDataCodeChessCornerPtAndWorldPt(&image, imagePts, worldPts);
    console = capture.text();
    return status;
  }

  void expectUntouched() const {
    EXPECT_THAT(imagePts, ElementsAre(cv::Point2f(-1, -2)));
    EXPECT_THAT(worldPts, ElementsAre(cv::Point3f(-3, -4, -5)));
  }

  std::vector<std::string> callsUpTo(std::size_t count) const {
    return {kAllCalls.begin(), kAllCalls.begin() + static_cast<std::ptrdiff_t>(count)};
  }

  tagOzKImage image{};
  Shot shot;
  std::vector<cv::Point2f> imagePts;
  std::vector<cv::Point3f> worldPts;
  std::string console;
};

TEST_F(DataCodeCorners, EveryFunctionIsCalledOnceInOrder) {
  EXPECT_EQ(find(shot), 0);
  EXPECT_EQ(fake::calls(), kAllCalls);
  EXPECT_EQ(console, "finded code is 3,5,20\nparsed code content is (3,5),(20.000000,20.000000)\n");
  EXPECT_EQ(logLines(), kMessages);
}

TEST_F(DataCodeCorners, BothLibrariesGetTheImageAndItsSize) {
  ASSERT_EQ(find(shot), 0);
  const fake::Record& record = fake::records().front();
  EXPECT_EQ(record.readerSize.width, 640);
  EXPECT_EQ(record.readerSize.height, 480);
  EXPECT_EQ(record.extractorSize.width, 640);
  EXPECT_EQ(record.extractorSize.height, 480);
  EXPECT_EQ(record.readerImage, &image);
  EXPECT_EQ(record.extractorImage, &image);
}

TEST_F(DataCodeCorners, ThreeFieldsOfTheReadersConfigurationAreSet) {
  ASSERT_EQ(find(shot), 0);
  std::array<unsigned char, 176> expected;
  expected.fill(fake::kConfigByte);
  const std::int32_t one = 1, thirty = 30, two = 2;
  std::memcpy(&expected[0], &one, 4);
  std::memcpy(&expected[56], &thirty, 4);
  std::memcpy(&expected[68], &two, 4);
  EXPECT_EQ(fake::records().front().readerConfig, expected);
}

TEST_F(DataCodeCorners, TwoFieldsOfTheExtractorsConfigurationAreTheTruncatedSquareSize) {
  const auto configured = [&](const std::string& content) {
    shot.content = content;
    EXPECT_EQ(find(shot), 0);
    return fake::records().front().extractorConfig;
  };
  const auto expected = [](std::int32_t size) {
    std::array<unsigned char, 128> bytes;
    bytes.fill(fake::kConfigByte);
    std::memcpy(&bytes[8], &size, 4);
    std::memcpy(&bytes[12], &size, 4);
    return bytes;
  };
  EXPECT_EQ(configured("1,1,12.9"), expected(12));
  EXPECT_EQ(configured("1,1,-12.9"), expected(-12));
  EXPECT_EQ(configured("1,1,0.5"), expected(0));
  const std::int32_t smallest = std::numeric_limits<std::int32_t>::min();
  EXPECT_EQ(configured("1,1,1e30"), expected(smallest));
  EXPECT_EQ(configured("1,1,nan"), expected(smallest));
}

TEST_F(DataCodeCorners, SeedIsTheCodesSquareWithoutAnyShift) {
  ASSERT_EQ(find(shot), 0);
  const CalibCornerSet& seed = fake::records().front().seed;
  EXPECT_EQ(seed.count, 4);
  EXPECT_EQ(seed.column[0], 10);
  EXPECT_EQ(seed.row[0], 40);
  EXPECT_EQ(seed.column[3], 31);
  EXPECT_EQ(seed.row[3], 41);
  EXPECT_EQ(seed.worldX[0], 40);
  EXPECT_EQ(seed.worldY[0], 100);
}

TEST_F(DataCodeCorners, CornersLoseHalfAPixel) {
  shot.corners = {{100.25F, 200.5F, 20, 40}, {0.1F, 1e7F, 0, 0}};
  ASSERT_EQ(find(shot), 0);
  ASSERT_EQ(imagePts.size(), 2U);
  ASSERT_EQ(worldPts.size(), 2U);
  EXPECT_EQ(imagePts[0], cv::Point2f(99.75F, 200));
  EXPECT_EQ(worldPts[0], cv::Point3f(20, 40, 0));
  EXPECT_EQ(imagePts[1].x, static_cast<float>(static_cast<double>(0.1F) - 0.5));
  EXPECT_EQ(imagePts[1].y, static_cast<float>(1e7 - 0.5));
}

TEST_F(DataCodeCorners, NoCornersIsASuccess) {
  shot.corners.clear();
  EXPECT_EQ(find(shot), 0);
  EXPECT_THAT(imagePts, IsEmpty());
  EXPECT_THAT(worldPts, IsEmpty());
}

TEST_F(DataCodeCorners, CountOutsideTheRecordReadsNothingBeyondIt) {
  for (int i = 0; i < 600; ++i) shot.corners.push_back({1, 2, 3, 4});
  for (const int count : {512, 513, 100000, std::numeric_limits<int>::max()}) {
    shot.count = count;
    EXPECT_EQ(find(shot), 0);
    EXPECT_EQ(imagePts.size(), 512U) << count;
    EXPECT_EQ(worldPts.size(), 512U) << count;
  }
  for (const int count : {0, -1, std::numeric_limits<int>::min()}) {
    shot.count = count;
    EXPECT_EQ(find(shot), 0);
    EXPECT_THAT(imagePts, IsEmpty()) << count;
  }
}

TEST_F(DataCodeCorners, OnlyTheFirstCodeCounts) {
  shot.codes = 7;
  EXPECT_EQ(find(shot), 0);
  EXPECT_EQ(imagePts.size(), 3U);
}

TEST_F(DataCodeCorners, ContentThatDoesNotParseStillRunsTheExtraction) {
  shot.content = "no numbers";
  EXPECT_EQ(find(shot), 0);
  EXPECT_EQ(fake::calls(), kAllCalls);
  EXPECT_EQ(fake::records().front().seed.worldX[2], 0);
  EXPECT_THAT(logLines(), ElementsAre("finded code is no numbers",
                                      "parsed code content is (0,0),(0.000000,0.000000)"));
}

TEST_F(DataCodeCorners, ContentIsNeverAFormat) {
  shot.content = "%s%s%n%d,%x,%f";
  EXPECT_EQ(find(shot), 0);
  EXPECT_EQ(logLines().front(), "finded code is %s%s%n%d,%x,%f");
  EXPECT_THAT(console, testing::HasSubstr("finded code is %s%s%n%d,%x,%f\n"));
}

TEST_F(DataCodeCorners, LongContentIsReportedWhole) {
  shot.content = "1,2,3" + std::string(100000, 'x');
  EXPECT_EQ(find(shot), 0);
  EXPECT_EQ(logLines().front(), "finded code is " + shot.content);
}

TEST_F(DataCodeCorners, LargestNumbersFitTheMessage) {
  shot.content = "-2147483648,-2147483648,-3.4028235e38";
  EXPECT_EQ(find(shot), 0);
  const std::string size = "-340282346638528859811704183484516925440.000000";
  EXPECT_EQ(logLines().at(1),
            "parsed code content is (-2147483648,-2147483648),(" + size + "," + size + ")");
}

TEST_F(DataCodeCorners, ReaderThatCannotBeMade) {
  shot.dcCreate = -1303;
  EXPECT_EQ(find(shot), -1303);
  EXPECT_EQ(fake::calls(), callsUpTo(1));
  EXPECT_EQ(console, "dcCreate failed.return value is -1303.imgSize is (640,480)\n");
  EXPECT_THAT(logLines(), ElementsAre("dcCreate failed.return value is -1303.imgSize(640,480)"));
  expectUntouched();
}

TEST_F(DataCodeCorners, ReaderThatFails) {
  shot.dcProcess = 5;
  EXPECT_EQ(find(shot), 5);
  EXPECT_EQ(fake::calls(), callsUpTo(4)); // not released
  EXPECT_EQ(console, "dcProcess failed.return value is 5\n");
  EXPECT_THAT(logLines(), ElementsAre("dcProcess failed.return value is 5"));
  expectUntouched();
}

TEST_F(DataCodeCorners, NoCode) {
  for (const int codes : {0, -1}) {
    shot.codes = codes;
    EXPECT_EQ(find(shot), -2800);
    EXPECT_EQ(fake::calls(), callsUpTo(4)); // not released
    EXPECT_EQ(console, "find data code failed\n");
    EXPECT_EQ(logLines().back(), "find data code failed");
    expectUntouched();
  }
}

TEST_F(DataCodeCorners, CodeWithoutTextOrCornersIsNone) {
  Shot broken[3] = {shot, shot, shot};
  broken[0].hasItems = false;
  broken[1].hasContent = false;
  broken[2].hasCorners = false;
  for (const Shot& script : broken) {
    EXPECT_EQ(find(script), -2800);
    EXPECT_EQ(fake::calls(), callsUpTo(4));
    expectUntouched();
  }
}

TEST_F(DataCodeCorners, ExtractorThatCannotBeMade) {
  shot.calibCreate = 9;
  EXPECT_EQ(find(shot), 9);
  EXPECT_EQ(fake::calls(), callsUpTo(5)); // not released
  EXPECT_THAT(console, testing::EndsWith("\ncalibCreate failed.return value is 9\n"));
  EXPECT_EQ(logLines().back(), "calibCreate failed.return value is 9");
  expectUntouched();
}

TEST_F(DataCodeCorners, ExtractorThatFails) {
  shot.calibCornerExtractExt = -1110;
  EXPECT_EQ(find(shot), -1110);
  EXPECT_EQ(fake::calls(), callsUpTo(8)); // not released
  EXPECT_THAT(console, testing::EndsWith("\ncalibCornerExtractExt failed.return value is -1110\n"));
  EXPECT_EQ(logLines().back(), "calibCornerExtractExt failed.return value is -1110");
  expectUntouched();
}

TEST_F(DataCodeCorners, FailedReleasesAreReportedOnly) {
  shot.dcRelease = 1;
  shot.calibRelease = 2;
  EXPECT_EQ(find(shot), 0);
  EXPECT_EQ(fake::calls(), kAllCalls);
  EXPECT_EQ(imagePts.size(), 3U);
  EXPECT_THAT(console, testing::EndsWith("\ndcRelease failed.return value is 1\n"
                                         "calibRelease failed.return value is 2\n"));
  EXPECT_EQ(logLines().at(2), "dcRelease failed.return value is 1");
  EXPECT_EQ(logLines().at(3), "calibRelease failed.return value is 2");
}

class DataCodeCornersExport : public DataCodeCorners {
 protected:
  int findByExport(tagOzKImage* record) {
    fake::play({shot});
    const ConsoleCapture capture;
    return ozkFindDataCodeChessCornerPtAndWorldPt(record, pixels, places);
  }

  std::vector<tagOzKPoint2Df32> pixels{{-1, -2}};
  std::vector<tagOzKPoint3Df32> places{{-3, -4, -5}};
};

TEST_F(DataCodeCornersExport, NullImageCallsNothing) {
  EXPECT_EQ(findByExport(nullptr), -1111);
  EXPECT_THAT(fake::calls(), IsEmpty());
  EXPECT_EQ(pixels.size(), 1U);
}

TEST_F(DataCodeCornersExport, CornersReplaceWhatWasThere) {
  EXPECT_EQ(findByExport(&image), 0);
  ASSERT_EQ(pixels.size(), 3U);
  ASSERT_EQ(places.size(), 3U);
  EXPECT_EQ(pixels[2].x, 101.5F);
  EXPECT_EQ(pixels[2].y, 201.5F);
  EXPECT_EQ(places[2].x, 40);
  EXPECT_EQ(places[2].y, 42);
  EXPECT_EQ(places[2].z, 0);
}

TEST_F(DataCodeCornersExport, NoCornersEmptyTheVectors) {
  shot.corners.clear();
  EXPECT_EQ(findByExport(&image), 0);
  EXPECT_THAT(pixels, IsEmpty());
  EXPECT_THAT(places, IsEmpty());
}

TEST_F(DataCodeCornersExport, FailureLeavesTheVectors) {
  shot.calibCornerExtractExt = 4;
  EXPECT_EQ(findByExport(&image), 4);
  ASSERT_EQ(pixels.size(), 1U);
  EXPECT_EQ(pixels[0].x, -1);
  ASSERT_EQ(places.size(), 1U);
  EXPECT_EQ(places[0].z, -5);
}

} // namespace
} // namespace velmorn
