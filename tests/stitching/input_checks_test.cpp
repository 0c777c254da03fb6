// What a stitching run refuses before it reads an image, in which order, and what it says.
#include <filesystem>
#include <limits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "stitching/chess_stitching.h"
#include "stitching/stitch_run.h"
#include "support/temp_dir.h"

namespace velmorn {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using Lines = std::vector<std::string>;

const std::string kImageError = "chess image error";
const std::string kTooFew = "too few chess images";
const std::string kParameterError = "camera matrix or dist is error";

class InputChecks : public TempDirTest {
 protected:
  // The run is refused with exactly these messages, and nothing but the maps' content is lost.
  void expectRefused(const StitchInputs& inputs, const std::string& console, const Lines& log) {
    std::filesystem::remove("velmorn.log");
    const DriverOutcome outcome = runDriver(inputs);
    EXPECT_EQ(outcome.status, -1107);
    EXPECT_EQ(outcome.console, console);
    EXPECT_EQ(logLines(), log);
    EXPECT_THAT(outcome.rotations, IsEmpty());
    EXPECT_THAT(outcome.translations, IsEmpty());
    EXPECT_THAT(outcome.residuals, IsEmpty());
    EXPECT_EQ(outcome.baseCamIdx, inputs.baseCamIdx);
  }

  void expectRefusedOnBothChannels(const StitchInputs& inputs, const std::string& message) {
    expectRefused(inputs, message + "\n", {message});
  }

  // The checks are passed: images are read.
  void expectAccepted(const StitchInputs& inputs) {
    const DriverOutcome outcome = runDriver(inputs);
    EXPECT_NE(outcome.status, -1107);
    EXPECT_THAT(outcome.console, HasSubstr("find corner: missing-0.png\n"));
  }

  StitchInputs inputs = inputsWithoutImages(3);
};

TEST_F(InputChecks, GoodInputsReachTheImages) { expectAccepted(inputs); }

TEST_F(InputChecks, FewerThanTwoCamerasAreRefusedInTheLogOnly) {
  const Lines log = {"the number of cameras should be greater than 2"};
  expectRefused(inputsWithoutImages(0), "", log);
  expectRefused(inputsWithoutImages(1), "", log);
}

TEST_F(InputChecks, TwoCamerasAreEnough) { expectAccepted(inputsWithoutImages(2)); }

TEST_F(InputChecks, TenCamerasAreNotTooMany) { expectAccepted(inputsWithoutImages(10)); }

TEST_F(InputChecks, MoreThanTenCamerasAreRefusedInTheLogOnly) {
  expectRefused(inputsWithoutImages(11), "",
                {"error: the number of cameras(11) is greater than 10"});
  expectRefused(inputsWithoutImages(250), "",
                {"error: the number of cameras(250) is greater than 10"});
}

TEST_F(InputChecks, CameraWithoutImageListIsRefused) {
  for (const char* camID : {"cam0", "cam1", "cam2"}) {
    StitchInputs spoilt = inputs;
    spoilt.paths.erase(camID);
    expectRefusedOnBothChannels(spoilt, kImageError);
  }
}

TEST_F(InputChecks, DifferentNumbersOfImagesAreRefused) {
  for (const char* camID : {"cam0", "cam1", "cam2"}) {
    StitchInputs spoilt = inputs;
    spoilt.paths[camID].push_back("one-more.png");
    expectRefusedOnBothChannels(spoilt, kImageError);
    spoilt.paths[camID].clear();
    expectRefusedOnBothChannels(spoilt, kImageError);
  }
}

TEST_F(InputChecks, FewerImagesThanTheLeastNumberAreRefused) {
  inputs.minImages = 4;
  expectRefusedOnBothChannels(inputs, kTooFew);
  inputs.minImages = std::numeric_limits<int>::max();
  expectRefusedOnBothChannels(inputs, kTooFew);
}

TEST_F(InputChecks, AsManyImagesAsTheLeastNumberAreEnough) {
  inputs.minImages = 3;
  expectAccepted(inputs);
}

// A comparison of unsigned sizes would take a negative number for a huge one.
TEST_F(InputChecks, LeastNumberOfZeroOrLessIsPassed) {
  for (const int minImages : {0, -1, std::numeric_limits<int>::min()}) {
    inputs.minImages = minImages;
    expectAccepted(inputs);
  }
}

TEST_F(InputChecks, EmptyImageListsAreTooFewUnlessNoneIsAskedFor) {
  for (auto& [id, paths] : inputs.paths) paths.clear();
  inputs.minImages = 1;
  expectRefusedOnBothChannels(inputs, kTooFew);
  inputs.minImages = 0;
  EXPECT_EQ(runDriver(inputs).status, -1);
}

TEST_F(InputChecks, CameraWithoutMatrixIsRefused) {
  for (const char* camID : {"cam0", "cam1", "cam2"}) {
    StitchInputs spoilt = inputs;
    spoilt.intrinsics.erase(camID);
    expectRefusedOnBothChannels(spoilt, kParameterError);
  }
}

TEST_F(InputChecks, CameraWithoutDistortionIsRefused) {
  for (const char* camID : {"cam0", "cam1", "cam2"}) {
    StitchInputs spoilt = inputs;
    spoilt.distortions.erase(camID);
    expectRefusedOnBothChannels(spoilt, kParameterError);
  }
}

TEST_F(InputChecks, MatrixOfAnotherShapeIsRefused) {
  for (const cv::Size shape : {cv::Size(), cv::Size(4, 3), cv::Size(3, 4), cv::Size(2, 2),
                               cv::Size(9, 1), cv::Size(1, 9)}) {
    std::filesystem::remove("velmorn.log");
    MatrixMap intrinsics, distortions, rotations, translations;
    ResidualMap residuals;
    for (const std::string& id : inputs.camIDs) {
      intrinsics[id] = cv::Mat::eye(3, 3, CV_64FC1);
      distortions[id] = cv::Mat::zeros(1, 12, CV_64FC1);
    }
    intrinsics["cam1"] = cv::Mat::ones(shape, CV_64FC1);
    int baseCamIdx = 1;
    const ConsoleCapture console;
    EXPECT_EQ(calCameraRTByChessImgs(inputs.camIDs, inputs.paths, intrinsics, distortions, {9, 6},
                                     25, rotations, translations, residuals, 3, false, baseCamIdx),
              -1107)
        << shape;
    EXPECT_EQ(console.text(), kParameterError + "\n");
    EXPECT_EQ(logLines(), Lines{kParameterError});
    EXPECT_EQ(baseCamIdx, 1);
  }
}

TEST_F(InputChecks, NumberOfCamerasIsCheckedFirst) {
  StitchInputs one = inputsWithoutImages(1);
  one.paths.clear();
  one.intrinsics.clear();
  one.minImages = 10;
  expectRefused(one, "", {"the number of cameras should be greater than 2"});
  StitchInputs eleven = inputsWithoutImages(11);
  eleven.paths.clear();
  eleven.intrinsics.clear();
  expectRefused(eleven, "", {"error: the number of cameras(11) is greater than 10"});
}

TEST_F(InputChecks, ImageListsAreCheckedBeforeTheLeastNumber) {
  inputs.paths["cam2"].pop_back();
  inputs.minImages = 10;
  expectRefusedOnBothChannels(inputs, kImageError);
}

TEST_F(InputChecks, ImageListsAreCheckedBeforeTheParameters) {
  inputs.paths.erase("cam2");
  inputs.intrinsics.clear();
  expectRefusedOnBothChannels(inputs, kImageError);
}

TEST_F(InputChecks, LeastNumberIsCheckedBeforeTheParameters) {
  inputs.minImages = 10;
  inputs.intrinsics.clear();
  inputs.distortions.clear();
  expectRefusedOnBothChannels(inputs, kTooFew);
}

TEST_F(InputChecks, SeveralBadCamerasAreReportedOnce) {
  inputs.paths.clear();
  expectRefusedOnBothChannels(inputs, kImageError);
}

TEST_F(InputChecks, CamerasOutsideTheListAreNotChecked) {
  inputs.paths["other"] = {"missing-3.png"};
  expectAccepted(inputs);
}

TEST_F(InputChecks, PatternAndSquareAreNotChecked) {
  inputs.patternSize = {2, 2};
  inputs.squareSize = 0;
  expectAccepted(inputs);
}

TEST_F(InputChecks, NoCornerImageFolderIsMade) {
  inputs.saveCornerImages = true;
  inputs.minImages = 10;
  runDriver(inputs);
  EXPECT_FALSE(std::filesystem::exists("chessImgs"));
}

} // namespace
} // namespace velmorn
