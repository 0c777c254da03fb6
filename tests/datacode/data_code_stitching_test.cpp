// Stitching by data-code board, with libraries that do what a script says.
#include <cstring>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <opencv2/imgcodecs.hpp>

#include "datacode/data_code_rig.h"
#include "support/matchers.h"
#include "support/temp_dir.h"

namespace velmorn {
namespace {

using testing::Contains;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

// Single-precision corners, exact otherwise.
constexpr double kDegrees = 2e-4, kLength = 2e-3;

class DataCodeStitching : public TempDirTest {
 protected:
  DataCodeOutcome run(const DataCodeRig& rig, DataCodeInputs inputs) {
    fake::play(rig.script());
    return runDataCode(inputs);
  }

  static void expectBaseEntry(const OzKStitchResult& result, int base) {
    for (int e = 0; e < 16; ++e) {
      const bool isOne = e == 0 || e == 4 || e == 10 || e == 15;
      EXPECT_EQ(result.camExtrinsic[base].data[e], isOne ? 1 : 0) << e;
    }
  }
};

TEST_F(DataCodeStitching, EntriesAreBaseFromCam) {
  const DataCodeRig rig({"11", "11"}, dir());
  DataCodeInputs inputs = rig.inputs();
  inputs.baseCamIdx = 0;
  const DataCodeOutcome out = run(rig, inputs);
  ASSERT_EQ(out.status, 0);
  EXPECT_EQ(out.result.cameraNum, 2);
  EXPECT_EQ(out.result.baseCamIdx, 0);
  expectBaseEntry(out.result, 0);
  EXPECT_THAT(transformOf(out.result.camExtrinsic[1]),
              extrinsicNear(rig.camFromCam(0, 1), kDegrees, kLength));
  EXPECT_EQ(out.result.camRTError[0], 0);
  EXPECT_EQ(out.result.camRTError[1], 0);
  EXPECT_TRUE(isUntouchedFrom(out.result, 2));
  EXPECT_THAT(out.console, EndsWith("\nbaseCamIdx=0\n"));
  EXPECT_EQ(logLines().back(), "ozkVelmornByDataCodeChess success");
}

TEST_F(DataCodeStitching, MiddleOfAChainIsChosenAsBase) {
  const DataCodeRig rig({"100", "110", "010"}, dir());
  const DataCodeOutcome out = run(rig, rig.inputs());
  ASSERT_EQ(out.status, 0);
  EXPECT_EQ(out.result.baseCamIdx, 1);
  expectBaseEntry(out.result, 1);
  EXPECT_THAT(transformOf(out.result.camExtrinsic[2]),
              extrinsicNear(rig.camFromCam(1, 2), kDegrees, kLength));
  EXPECT_THAT(out.console, EndsWith("\nbaseCamIdx=1\n"));
}

TEST_F(DataCodeStitching, RequestedBaseIsTakenThroughTwoLinks) {
  const DataCodeRig rig({"10", "11", "01"}, dir());
  DataCodeInputs inputs = rig.inputs();
  inputs.baseCamIdx = 2;
  const DataCodeOutcome out = run(rig, inputs);
  ASSERT_EQ(out.status, 0);
  EXPECT_EQ(out.result.baseCamIdx, 2);
  EXPECT_THAT(transformOf(out.result.camExtrinsic[0]),
              extrinsicNear(rig.camFromCam(2, 0), kDegrees, kLength));
}

TEST_F(DataCodeStitching, FirstOfSeveralBasesWins) {
  const DataCodeRig rig({"1", "1", "1"}, dir());
  for (const int request : {-1, 3, 100}) {
    DataCodeInputs inputs = rig.inputs();
    inputs.baseCamIdx = request;
    EXPECT_EQ(run(rig, inputs).result.baseCamIdx, 0) << request;
  }
}

TEST_F(DataCodeStitching, TenCamerasAreAccepted) {
  const DataCodeRig rig(std::vector<std::string>(10, "1"), dir());
  const DataCodeOutcome out = run(rig, rig.inputs());
  ASSERT_EQ(out.status, 0);
  EXPECT_EQ(out.result.cameraNum, 10);
  EXPECT_THAT(transformOf(out.result.camExtrinsic[9]),
              extrinsicNear(rig.camFromCam(0, 9), kDegrees, 2 * kLength));
}

TEST_F(DataCodeStitching, CamerasWithoutACommonShot) {
  const DataCodeRig rig({"110", "110", "001"}, dir());
  DataCodeInputs inputs = rig.inputs();
  inputs.baseCamIdx = 0;
  const DataCodeOutcome out = run(rig, inputs);
  EXPECT_EQ(out.status, -4);
  EXPECT_THAT(out.console, EndsWith("\nR camera RTmat is empty\n"));
  EXPECT_EQ(logLines().back(), "R camera RTmat is empty");
  // The cameras before it are in the record, its own entry and the totals are not.
  expectBaseEntry(out.result, 0);
  EXPECT_THAT(transformOf(out.result.camExtrinsic[1]),
              extrinsicNear(rig.camFromCam(0, 1), kDegrees, kLength));
  EXPECT_TRUE(isUntouchedFrom(out.result, 2));
  EXPECT_EQ(out.result.cameraNum, untouchedDataCodeResult().cameraNum);
  EXPECT_EQ(out.result.baseCamIdx, untouchedDataCodeResult().baseCamIdx);
}

// A tree without any link is the shallowest.
TEST_F(DataCodeStitching, UnlinkedCameraIsChosenAsBase) {
  const DataCodeRig rig({"10", "10", "01"}, dir());
  const DataCodeOutcome out = run(rig, rig.inputs());
  EXPECT_EQ(out.status, -4);
  EXPECT_THAT(out.console, EndsWith("\nP camera RTmat is empty\n"));
}

TEST_F(DataCodeStitching, LibrariesGetTheImageAsGreyRecord) {
  const DataCodeRig rig({"1", "1"}, dir());
  const cv::Mat colour(30, 50, CV_8UC3, cv::Scalar(10, 20, 30));
  DataCodeInputs inputs = rig.inputs();
  cv::imwrite(inputs.paths["P"][0], colour);
  run(rig, inputs);
  const tagOzKImage& image = fake::records().front().image;
  EXPECT_EQ(image.type, 0x100U);
  EXPECT_EQ(image.dataType, 0U);
  EXPECT_EQ(image.width, 50U);
  EXPECT_EQ(image.height, 30U);
  EXPECT_EQ(image.roiX0, 0);
  EXPECT_EQ(image.roiY0, 0);
  EXPECT_EQ(image.roiX1, 49);
  EXPECT_EQ(image.roiY1, 29);
  EXPECT_NE(image.data, nullptr);
}

TEST_F(DataCodeStitching, UnreadableFileIsAnEmptyImage) {
  const DataCodeRig rig({"11", "11"}, dir());
  DataCodeInputs inputs = rig.inputs();
  inputs.paths["P"][0] = "not-there-%s.png";
  std::vector<fake::Shot> script = rig.script();
  script[0].dcCreate = 3;
  fake::play(script);
  const DataCodeOutcome out = runDataCode(inputs);
  EXPECT_EQ(out.status, 0);
  EXPECT_EQ(fake::records().front().readerSize.width, 0);
  EXPECT_THAT(out.console, HasSubstr("dcCreate failed.return value is 3.imgSize is (0,0)\n"
                                     "findDataCodeChessCornerPtAndWorldPt failed..image path is "
                                     "not-there-%s.png\n"));
  EXPECT_THAT(logLines(), Contains("findDataCodeChessCornerPtAndWorldPt failed.image path is "
                                   "not-there-%s.png"));
}

TEST_F(DataCodeStitching, FatalCodesStopTheRun) {
  const DataCodeRig rig({"11", "11"}, dir());
  for (const int code : {-1110, -1303}) {
    std::vector<fake::Shot> script = rig.script();
    script[1].calibCornerExtractExt = code;
    fake::play(script);
    DataCodeInputs inputs = rig.inputs();
    const DataCodeOutcome out = runDataCode(inputs);
    EXPECT_EQ(out.status, -1110);
    EXPECT_EQ(fake::records().size(), 2U); // no further image
    EXPECT_TRUE(isUntouchedFrom(out.result, 0));
    EXPECT_THAT(out.console, Not(HasSubstr("image path")));
  }
}

TEST_F(DataCodeStitching, OtherCodesSkipTheShot) {
  const DataCodeRig rig({"11", "11"}, dir());
  for (const int code : {-1109, -1, 1, -2800}) {
    std::vector<fake::Shot> script = rig.script();
    script[2].dcProcess = code;
    fake::play(script);
    DataCodeInputs inputs = rig.inputs();
    const DataCodeOutcome out = runDataCode(inputs);
    EXPECT_EQ(out.status, 0) << code;
    EXPECT_EQ(fake::records().size(), 4U);
  }
}

TEST_F(DataCodeStitching, TooFewCornersSkipTheShot) {
  const DataCodeRig rig({"11", "11"}, dir());
  std::vector<fake::Shot> script = rig.script();
  script[0].corners.resize(7);
  fake::play(script);
  DataCodeInputs inputs = rig.inputs();
  inputs.minCornerNum = 8;
  const DataCodeOutcome out = runDataCode(inputs);
  EXPECT_EQ(out.status, 0);
  const std::string text =
      "the number of finded corner is less than 7.image path is " + inputs.paths["P"][0];
  EXPECT_THAT(out.console, HasSubstr("\n" + text + "\n"));
  EXPECT_THAT(logLines(), Contains(text));
  inputs.minCornerNum = 7;
  fake::play(script);
  EXPECT_THAT(runDataCode(inputs).console, Not(HasSubstr("less than")));
}

TEST_F(DataCodeStitching, NegativeMinimumRefusesEveryShot) {
  const DataCodeRig rig({"1", "1"}, dir());
  DataCodeInputs inputs = rig.inputs();
  inputs.minCornerNum = -1;
  const DataCodeOutcome out = run(rig, inputs);
  EXPECT_EQ(out.status, -4);
  EXPECT_THAT(out.console, HasSubstr("the number of finded corner is less than 25.image path is "));
}

TEST_F(DataCodeStitching, PoseThatCannotBeSolvedSkipsTheShot) {
  const DataCodeRig rig({"11", "11"}, dir());
  std::vector<fake::Shot> script = rig.script();
  script[0].corners.resize(3); // solvePnP throws
  DataCodeInputs inputs = rig.inputs();
  for (const int minimum : {0, 3}) {
    fake::play(script);
    inputs.minCornerNum = minimum;
    const DataCodeOutcome out = runDataCode(inputs);
    EXPECT_EQ(out.status, 0);
    EXPECT_THAT(out.console,
                HasSubstr("\nsolvePnP failed..image path is " + inputs.paths["P"][0] + "\n"));
    EXPECT_THAT(logLines(), Contains("solvePnP failed.image path is " + inputs.paths["P"][0]));
  }
  script[0].corners.clear();
  fake::play(script);
  inputs.minCornerNum = 0;
  EXPECT_EQ(runDataCode(inputs).status, 0);
}

TEST_F(DataCodeStitching, CornersOnALineSpoilAtMostTheirShot) {
  const DataCodeRig rig({"11", "11"}, dir());
  std::vector<fake::Shot> script = rig.script();
  script[0].corners.resize(5);
  fake::play(script);
  DataCodeInputs inputs = rig.inputs();
  EXPECT_EQ(runDataCode(inputs).status, 0);
}

TEST_F(DataCodeStitching, CornerImagesShowEveryCorner) {
  const DataCodeRig rig({"10", "11"}, dir());
  DataCodeInputs inputs = rig.inputs();
  const cv::Mat grey(480, 640, CV_8UC1, cv::Scalar(90));
  cv::imwrite(inputs.paths["P"][0], grey);
  std::vector<fake::Shot> script = rig.script();
  script[0].corners = {{100.9F, 200.9F, 0, 0}};
  fake::play(script);
  inputs.saveCornerImgs = true;
  inputs.minCornerNum = 20; // the shot is refused, its picture is there all the same
  runDataCode(inputs);
  const cv::Mat annotated = cv::imread("chessImgs/corner-P-0.bmp", cv::IMREAD_COLOR);
  ASSERT_EQ(annotated.size(), grey.size());
  // A circle of radius 2 about (100, 200): the half pixel is given back, then cut off.
  const cv::Vec3b green(0, 255, 0), paper(90, 90, 90);
  EXPECT_EQ(annotated.at<cv::Vec3b>(200, 102), green);
  EXPECT_EQ(annotated.at<cv::Vec3b>(200, 98), green);
  EXPECT_EQ(annotated.at<cv::Vec3b>(198, 100), green);
  EXPECT_EQ(annotated.at<cv::Vec3b>(200, 100), paper);
  EXPECT_EQ(annotated.at<cv::Vec3b>(200, 103), paper);
  EXPECT_FALSE(std::filesystem::exists("chessImgs/corner-P-1.bmp")); // no code there
  EXPECT_TRUE(std::filesystem::exists("chessImgs/corner-Q-0.bmp"));
  EXPECT_TRUE(std::filesystem::exists("chessImgs/corner-Q-1.bmp"));
}

TEST_F(DataCodeStitching, NoCornerImagesUnlessAskedFor) {
  const DataCodeRig rig({"1", "1"}, dir());
  EXPECT_EQ(run(rig, rig.inputs()).status, 0);
  EXPECT_FALSE(std::filesystem::exists("chessImgs"));
}

TEST_F(DataCodeStitching, CornerImageThatCannotBeWrittenChangesNothing) {
  const DataCodeRig rig({"1", "1"}, dir());
  writeFile("chessImgs", "a file in the folder's place");
  DataCodeInputs inputs = rig.inputs();
  inputs.saveCornerImgs = true;
  EXPECT_EQ(run(rig, inputs).status, 0);
}

TEST_F(DataCodeStitching, HostileCornersAndIdsAreSurvived) {
  const DataCodeRig rig({"11", "11"}, dir());
  std::vector<fake::Shot> script = rig.script();
  const float inf = std::numeric_limits<float>::infinity();
  script[0].corners.assign(30, {inf, -inf, 0, 0});
  fake::play(script);
  DataCodeInputs inputs = rig.inputs();
  inputs.saveCornerImgs = true;
  inputs.paths["../%n%s"] = inputs.paths["P"];
  inputs.intrinsics["../%n%s"] = inputs.intrinsics["P"];
  inputs.distortions["../%n%s"] = inputs.distortions["P"];
  inputs.camIDs[0] = "../%n%s";
  runDataCode(inputs); // no crash; what comes out has no meaning
  EXPECT_EQ(fake::records().size(), 4U);
}

// --- Input checks ------------------------------------------------------------------------------

class DataCodeInputChecks : public DataCodeStitching {
 protected:
  // Both entries refuse the inputs in the same way, before any image is read.
  void expectRefused(const DataCodeInputs& inputs, const std::string& log,
                     const std::string& console) {
    for (const auto entry : {&runDataCode, &runDataCodeBackup}) {
      std::filesystem::remove("velmorn.log");
      fake::play({fake::Shot()});
      DataCodeInputs copy = inputs;
      const DataCodeOutcome out = entry(copy);
      EXPECT_EQ(out.status, -1107);
      EXPECT_EQ(out.console, console);
      EXPECT_THAT(logLines(), testing::ElementsAre(log));
      EXPECT_TRUE(isUntouchedFrom(out.result, 0));
      EXPECT_TRUE(fake::calls().empty());
    }
  }
};

TEST_F(DataCodeInputChecks, FewerThanTwoCameras) {
  const DataCodeRig rig({"1"}, dir());
  expectRefused(rig.inputs(), "the number of cameras should be greater than 2", "");
  expectRefused({}, "the number of cameras should be greater than 2", "");
}

TEST_F(DataCodeInputChecks, ElevenCameras) {
  const DataCodeRig rig(std::vector<std::string>(11, "1"), dir());
  expectRefused(rig.inputs(), "error: the number of cameras(11) is greater than 10", "");
}

TEST_F(DataCodeInputChecks, ImageLists) {
  const DataCodeRig rig({"11", "11"}, dir());
  DataCodeInputs missing = rig.inputs(), shorter = rig.inputs(), longer = rig.inputs();
  missing.paths.erase("P");
  shorter.paths["Q"].pop_back();
  longer.paths["Q"].push_back("x.png");
  for (const DataCodeInputs& inputs : {missing, shorter, longer})
    expectRefused(inputs, "chess image error", "chess image error\n");
}

TEST_F(DataCodeInputChecks, NoShots) {
  const DataCodeRig rig({"", ""}, dir());
  DataCodeInputs inputs = rig.inputs();
  inputs.paths = {{"P", {}}, {"Q", {}}};
  expectRefused(inputs, "too few chess images", "too few chess images\n");
}

TEST_F(DataCodeInputChecks, CameraParameters) {
  const DataCodeRig rig({"1", "1"}, dir());
  DataCodeInputs noMatrix = rig.inputs(), noDistortion = rig.inputs();
  noMatrix.intrinsics.erase("Q");
  noDistortion.distortions.erase("P");
  for (const DataCodeInputs& inputs : {noMatrix, noDistortion})
    expectRefused(inputs, "camera matrix or dist is error", "camera matrix or dist is error\n");
}

TEST_F(DataCodeInputChecks, ImagesAreCheckedBeforeParameters) {
  const DataCodeRig rig({"1", "1"}, dir());
  DataCodeInputs inputs = rig.inputs();
  inputs.paths.erase("Q");
  inputs.intrinsics.clear();
  expectRefused(inputs, "chess image error", "chess image error\n");
}

TEST_F(DataCodeInputChecks, ArgumentsAreNotModified) {
  const DataCodeRig rig({"1", "1"}, dir());
  DataCodeInputs inputs = rig.inputs();
  const ImagePathMap before = inputs.paths;
  fake::play(rig.script());
  runDataCode(inputs);
  EXPECT_EQ(inputs.paths, before);
  EXPECT_EQ(inputs.intrinsics.size(), 2U);
  EXPECT_EQ(inputs.distortions.size(), 2U);
}

} // namespace
} // namespace velmorn
