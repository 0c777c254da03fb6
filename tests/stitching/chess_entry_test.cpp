// The result record of a stitching run: what is written, and what is left alone.
#include <cstring>
#include <filesystem>
#include <iostream>
#include <streambuf>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "stitching/stitch_run.h"
#include "support/matchers.h"
#include "support/temp_dir.h"

namespace velmorn {
namespace {

using testing::ElementsAre;
using testing::EndsWith;

class ChessEntry : public TempDirTest {
 protected:
  void useRig(int cameraCount, const ViewGroups& groups, const std::vector<std::string>& ids = {}) {
    rig = quickRig(cameraCount, groups, ids);
    inputs = inputsWithImages(rig, dir() / "images");
  }

  void expectRefused(int status) {
    const EntryOutcome outcome = runEntry(inputs);
    EXPECT_EQ(outcome.status, status);
    EXPECT_TRUE(isUntouched(outcome.result));
  }

  SyntheticRig rig;
  StitchInputs inputs;
};

// Existing hosts rely on element 4, not 5, being 1.
void expectBaseEntry(const OzKStitchResult& result, int base) {
  for (int element = 0; element < 16; ++element) {
    const bool one = element == 0 || element == 4 || element == 10 || element == 15;
    EXPECT_EQ(result.camExtrinsic[base].data[element], one ? 1.0 : 0.0) << "element " << element;
  }
  EXPECT_EQ(result.camRTError[base], 0);
}

void expectEntry(const OzKStitchResult& result, int camera, const DriverOutcome& driver,
                 const std::string& camID) {
  const cv::Mat &R = driver.rotations.at(camID), &T = driver.translations.at(camID);
  const double expected[16] = {R.at<double>(0, 0),
                               R.at<double>(0, 1),
                               R.at<double>(0, 2),
                               T.at<double>(0),
                               R.at<double>(1, 0),
                               R.at<double>(1, 1),
                               R.at<double>(1, 2),
                               T.at<double>(1),
                               R.at<double>(2, 0),
                               R.at<double>(2, 1),
                               R.at<double>(2, 2),
                               T.at<double>(2),
                               0,
                               0,
                               0,
                               1};
  for (int element = 0; element < 16; ++element)
    EXPECT_EQ(result.camExtrinsic[camera].data[element], expected[element])
        << "camera " << camera << " element " << element;
  EXPECT_EQ(result.camRTError[camera], driver.residuals.at(camID));
}

TEST_F(ChessEntry, BaseEntryIsThePatternThatHostsRelyOn) {
  useRig(3, rowGroups(3));
  for (int base = 0; base < 3; ++base) {
    inputs.baseCamIdx = base;
    const EntryOutcome outcome = runEntry(inputs);
    ASSERT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.result.baseCamIdx, base);
    EXPECT_EQ(outcome.result.cameraNum, 3);
    expectBaseEntry(outcome.result, base);
  }
}

TEST_F(ChessEntry, OtherEntriesAreTheDriversMatrices) {
  useRig(3, chainGroups(3));
  for (const int base : {-1, 0, 2}) {
    inputs.baseCamIdx = base;
    const EntryOutcome outcome = runEntry(inputs);
    const DriverOutcome driver = runDriver(inputs);
    ASSERT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.result.baseCamIdx, driver.baseCamIdx);
    for (int camera = 0; camera < 3; ++camera)
      if (camera != driver.baseCamIdx)
        expectEntry(outcome.result, camera, driver, rig.ids[static_cast<std::size_t>(camera)]);
  }
}

TEST_F(ChessEntry, DirectLinkIsCamFromBase) {
  useRig(2, rowGroups(2));
  inputs.baseCamIdx = 1;
  const EntryOutcome outcome = runEntry(inputs);
  EXPECT_THAT(transformOf(outcome.result.camExtrinsic[0]),
              extrinsicNear(rig.camFromCam(0, 1), 0.2, 3));
  EXPECT_GT(outcome.result.camRTError[0], 0);
}

TEST_F(ChessEntry, EntriesBeyondTheCamerasStayAsTheyWere) {
  useRig(2, rowGroups(2));
  const EntryOutcome outcome = runEntry(inputs);
  ASSERT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.result.cameraNum, 2);
  const OzKStitchResult untouched = untouchedResult();
  EXPECT_EQ(std::memcmp(outcome.result.camExtrinsic + 2, untouched.camExtrinsic + 2,
                        8 * sizeof(tagOzKCamExtrinsic)),
            0);
  EXPECT_EQ(std::memcmp(outcome.result.camRTError + 2, untouched.camRTError + 2, 8 * sizeof(float)),
            0);
}

TEST_F(ChessEntry, TenCamerasFillTheRecord) {
  useRig(10, rowGroups(10));
  const EntryOutcome outcome = runEntry(inputs);
  ASSERT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.result.cameraNum, 10);
  expectBaseEntry(outcome.result, 0);
  const DriverOutcome driver = runDriver(inputs);
  for (int camera = 1; camera < 10; ++camera)
    expectEntry(outcome.result, camera, driver, "cam" + std::to_string(camera));
}

TEST_F(ChessEntry, SuccessEndsWithTheBaseAndThreeLogLines) {
  useRig(3, chainGroups(3));
  const EntryOutcome outcome = runEntry(inputs);
  EXPECT_EQ(withoutCornerSearch(outcome.console), "baseCamIdx=1");
  EXPECT_THAT(outcome.console, EndsWith("\nbaseCamIdx=1"));
  EXPECT_THAT(logLines(),
              ElementsAre("camreaIDs (cam0,cam1,cam2)",
                          "inputCameraIdx=-1.minSubCameraDepth=1,minDepthBaseCameraIdx=1,"
                          "minDepthCamID=cam1",
                          "calCameraRTByChessImgs success"));
}

// Images are searched in the order of the map's keys, results given in the order of the list.
TEST_F(ChessEntry, ListOrderIsTheResultsAndKeyOrderTheSearchs) {
  useRig(2, rowGroups(2), {"right", "left"});
  const EntryOutcome outcome = runEntry(inputs);
  ASSERT_EQ(outcome.status, 0);
  std::string expected;
  for (const char* id : {"left", "right"})
    for (const std::string& path : inputs.paths[id])
      expected += "find corner: " + path + "\nsuccess\n";
  EXPECT_EQ(outcome.console, expected + "baseCamIdx=0");
  EXPECT_EQ(logLines().at(0), "camreaIDs (right,left)");
  EXPECT_THAT(transformOf(outcome.result.camExtrinsic[1]),
              extrinsicNear(rig.camFromCam(1, 0), 0.2, 3));
}

TEST_F(ChessEntry, ExtraKeysOfTheMapsChangeNoResult) {
  useRig(2, rowGroups(2));
  const EntryOutcome expected = runEntry(inputs);
  inputs.paths["aaa"] = {"nowhere.png"};
  inputs.intrinsics["bbb"] = {};
  inputs.distortions["ccc"] = {};
  const EntryOutcome outcome = runEntry(inputs);
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(std::memcmp(&outcome.result, &expected.result, sizeof(OzKStitchResult)), 0);
  EXPECT_EQ(outcome.console,
            "find corner: nowhere.png\nload nowhere.png failed\n" + expected.console);
}

TEST_F(ChessEntry, RepeatedIdentifierIsListedTwice) {
  useRig(2, rowGroups(2));
  inputs.camIDs = {"cam0", "cam1", "cam1"};
  const EntryOutcome outcome = runEntry(inputs);
  ASSERT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.result.cameraNum, 3);
  expectBaseEntry(outcome.result, 0);
  EXPECT_EQ(std::memcmp(&outcome.result.camExtrinsic[1], &outcome.result.camExtrinsic[2],
                        sizeof(tagOzKCamExtrinsic)),
            0);
}

TEST_F(ChessEntry, RunsAreIdenticalToTheBit) {
  useRig(4, diamondGroups(4));
  const EntryOutcome first = runEntry(inputs), second = runEntry(inputs);
  ASSERT_EQ(first.status, 0);
  EXPECT_EQ(std::memcmp(&first.result, &second.result, sizeof(OzKStitchResult)), 0);
  EXPECT_EQ(first.console, second.console);
}

TEST_F(ChessEntry, RefusedInputsLeaveTheResultAlone) {
  inputs = inputsWithoutImages(1);
  expectRefused(-1107);
  inputs = inputsWithoutImages(11);
  expectRefused(-1107);
  inputs = inputsWithoutImages(3);
  inputs.minImages = 4;
  expectRefused(-1107);
  inputs = inputsWithoutImages(3);
  inputs.paths.erase("cam1");
  expectRefused(-1107);
  inputs = inputsWithoutImages(3);
  inputs.intrinsics.erase("cam2");
  expectRefused(-1107);
  inputs = inputsWithoutImages(3);
  inputs.distortions.erase("cam0");
  expectRefused(-1107);
}

TEST_F(ChessEntry, UnlinkedCameraLeavesTheResultAlone) {
  useRig(3, {{0, 1}});
  inputs.baseCamIdx = 0;
  const EntryOutcome outcome = runEntry(inputs);
  EXPECT_EQ(outcome.status, -1);
  EXPECT_TRUE(isUntouched(outcome.result));
  EXPECT_EQ(withoutCornerSearch(outcome.console), "failed to get camera cam2 RT\n");
  EXPECT_THAT(logLines(), ElementsAre("failed to get camera cam2 RT"));
}

TEST_F(ChessEntry, ImagesThatAreNotThereLeaveTheResultAlone) {
  inputs = inputsWithoutImages(2);
  expectRefused(-1);
  EXPECT_EQ(logLines().size(), 7U); // three images of two cameras and the camera that is not linked
}

// Whatever stands in the way of log and corner images, the result is the same to the bit.
// Takes every message but the last one of a successful run.
class LastMessageFails : public std::streambuf {
 protected:
  int_type overflow(int_type c) override { return traits_type::not_eof(c); }
  std::streamsize xsputn(const char* text, std::streamsize length) override {
    const bool last = std::string(text, static_cast<std::size_t>(length)).find("baseCamIdx=") == 0;
    return last ? 0 : length;
  }
};

TEST_F(ChessEntry, ConsoleThatThrowsLeavesTheResultAlone) {
  useRig(2, rowGroups(2));
  OzKStitchResult result = untouchedResult();
  LastMessageFails console;
  std::streambuf* const kept = std::cout.rdbuf(&console);
  std::cout.exceptions(std::ios::badbit);
  const int status = ozkVelmornByChess(inputs.camIDs, inputs.paths, inputs.intrinsics,
                                       inputs.distortions, inputs.patternSize, inputs.squareSize,
                                       result, inputs.minImages, false, inputs.baseCamIdx);
  std::cout.exceptions(std::ios::goodbit);
  std::cout.clear();
  std::cout.rdbuf(kept);
  EXPECT_EQ(status, kOzkComputationFailed);
  EXPECT_TRUE(isUntouched(result));
}

TEST_F(ChessEntry, WorkingDirectoryThatTakesNoFilesChangesNoResult) {
  useRig(2, rowGroups(2));
  const EntryOutcome expected = runEntry(inputs);
  std::filesystem::remove("velmorn.log");
  std::filesystem::create_directory("velmorn.log");
  writeFile("chessImgs", "in the way");
  inputs.saveCornerImages = true;
  const EntryOutcome outcome = runEntry(inputs);
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.console, expected.console);
  EXPECT_EQ(std::memcmp(&outcome.result, &expected.result, sizeof(OzKStitchResult)), 0);
}

TEST_F(ChessEntry, WorkingDirectoryThatIsGoneChangesNoResult) {
  useRig(2, rowGroups(2));
  const EntryOutcome expected = runEntry(inputs);
  std::filesystem::create_directory("gone");
  std::filesystem::current_path("gone");
  std::filesystem::remove(dir() / "gone");
  inputs.saveCornerImages = true;
  const EntryOutcome outcome = runEntry(inputs);
  std::filesystem::current_path(dir());
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(std::memcmp(&outcome.result, &expected.result, sizeof(OzKStitchResult)), 0);
}

} // namespace
} // namespace velmorn
