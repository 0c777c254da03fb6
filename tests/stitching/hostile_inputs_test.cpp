// Values that make no sense: a status code each time, never a crash or a hang.
#include <limits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <opencv2/imgcodecs.hpp>

#include "stitching/stitch_run.h"
#include "support/temp_dir.h"

namespace velmorn {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::IsNan;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

class HostileInputs : public TempDirTest {
 protected:
  void SetUp() override {
    rig = quickRig(2, rowGroups(2));
    inputs = inputsWithImages(rig, dir() / "images");
  }

  // The run fails and keeps its hands off the result.
  EntryOutcome expectFailed(const StitchInputs& spoilt) {
    const EntryOutcome outcome = runEntry(spoilt);
    EXPECT_EQ(outcome.status, -1);
    EXPECT_TRUE(isUntouched(outcome.result));
    return outcome;
  }

  // OpenCV computes with some senseless values as it would with any other. The run then either
  // fails cleanly or gives a complete record; nothing in between.
  EntryOutcome expectFailedOrComplete(const StitchInputs& spoilt) {
    const EntryOutcome outcome = runEntry(spoilt);
    if (outcome.status != 0) {
      EXPECT_EQ(outcome.status, -1);
      EXPECT_TRUE(isUntouched(outcome.result));
      return outcome;
    }
    EXPECT_EQ(outcome.result.cameraNum, 2);
    EXPECT_EQ(outcome.result.baseCamIdx, 0);
    const double* last = outcome.result.camExtrinsic[1].data + 12;
    EXPECT_THAT(std::vector<double>(last, last + 4), ElementsAre(0, 0, 0, 1));
    EXPECT_THAT(outcome.console, EndsWith("baseCamIdx=0"));
    return outcome;
  }

  // As above, and a complete record shows the host that it is of no use.
  void expectFailedOrNoNumbers(const StitchInputs& spoilt) {
    const EntryOutcome outcome = expectFailedOrComplete(spoilt);
    if (outcome.status != 0) return;
    const double* entry = outcome.result.camExtrinsic[1].data;
    EXPECT_THAT(std::vector<double>(entry, entry + 12), Each(IsNan()));
    EXPECT_THAT(outcome.result.camRTError[1], IsNan());
  }

  SyntheticRig rig;
  StitchInputs inputs;
};

TEST_F(HostileInputs, PatternThatOpencvRefuses) {
  for (const tagOzKSize pattern : {tagOzKSize{2, 2}, {2, 5}, {6, 2}, {0, 0}, {-1, 5}, {-6, -5}}) {
    inputs.patternSize = pattern;
    const EntryOutcome outcome = expectFailed(inputs);
    EXPECT_EQ(outcome.console, "find corner: " + inputs.paths["cam0"][0] + "\n");
  }
  EXPECT_THAT(logLines(), IsEmpty());
}

// With no image to refuse it on, an empty board fails where its pose is estimated.
TEST_F(HostileInputs, EmptyPatternWithoutReadableImages) {
  inputs = inputsWithoutImages(2);
  for (const tagOzKSize pattern : {tagOzKSize{0, 0}, {-1, 5}, {0, 6}, {-6, -5}}) {
    inputs.patternSize = pattern;
    expectFailed(inputs);
  }
}

TEST_F(HostileInputs, GiganticPatternIsNotFound) {
  constexpr int kHuge = 46341; // its square is beyond 31 bits
  inputs = inputsWithoutImages(2);
  inputs.patternSize = {kHuge, kHuge};
  expectFailed(inputs);
  inputs.patternSize = {std::numeric_limits<int>::max(), std::numeric_limits<int>::max()};
  expectFailed(inputs);
}

TEST_F(HostileInputs, OtherPatternThanTheImages) {
  inputs.patternSize = {7, 6};
  const EntryOutcome outcome = expectFailed(inputs);
  EXPECT_EQ(withoutCornerSearch(outcome.console), "failed to get camera cam1 RT\n");
}

TEST_F(HostileInputs, SquareOfNoSize) {
  for (const float square : {0.0F, -0.0F}) {
    inputs.squareSize = square;
    expectFailedOrComplete(inputs);
  }
}

TEST_F(HostileInputs, SquareThatIsNoNumber) {
  for (const double square : {kNaN, kInfinity, -kInfinity}) {
    inputs.squareSize = static_cast<float>(square);
    expectFailedOrNoNumbers(inputs);
  }
}

TEST_F(HostileInputs, ExtremeSquare) {
  for (const float square : {1e-38F, 1e38F, -35.0F}) {
    inputs.squareSize = square;
    expectFailedOrComplete(inputs);
  }
}

TEST_F(HostileInputs, CameraMatrixThatIsNoNumber) {
  for (const int element : {0, 2, 4, 5})
    for (const double value : {kNaN, kInfinity}) {
      StitchInputs spoilt = inputs;
      spoilt.intrinsics["cam1"].matrix[element] = value;
      SCOPED_TRACE(testing::Message() << "element " << element << " is " << value);
      expectFailedOrNoNumbers(spoilt);
    }
}

TEST_F(HostileInputs, CameraMatrixOfZeros) {
  inputs.intrinsics["cam0"] = {};
  expectFailedOrComplete(inputs);
}

TEST_F(HostileInputs, DistortionThatIsNoNumber) {
  for (int coefficient = 0; coefficient < 12; ++coefficient)
    for (const double value : {kNaN, kInfinity}) {
      StitchInputs spoilt = inputs;
      spoilt.distortions["cam0"].coeffs[coefficient] = value;
      SCOPED_TRACE(testing::Message() << "coefficient " << coefficient << " is " << value);
      expectFailedOrNoNumbers(spoilt);
    }
}

TEST_F(HostileInputs, BadImageFilesOnlyDropTheirPositions) {
  RigOptions options;
  options.shotsPerGroup = 8;
  rig = makeRig(options);
  inputs = inputsWithImages(rig, dir() / "more");
  inputs.minImages = 4;
  auto& paths = inputs.paths["cam1"];
  const std::string content = readFile(paths[0]);
  writeFile("corrupt.png", std::string(1000, '\xa5'));
  writeFile("truncated.png", content.substr(0, content.size() / 3));
  writeFile("empty.png", "");
  ASSERT_TRUE(cv::imwrite("small.png", cv::Mat(20, 20, CV_8UC1, cv::Scalar(7))));
  paths[4] = "corrupt.png";
  paths[5] = "truncated.png";
  paths[6] = "empty.png";
  paths[7] = "small.png";
  const EntryOutcome outcome = runEntry(inputs);
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(withoutCornerSearch(outcome.console), "image size is error\nbaseCamIdx=0");
  EXPECT_THAT(logLines(),
              ElementsAre("load corrupt.png failed", "load truncated.png failed",
                          "load empty.png failed", "image size is error", "camreaIDs (cam0,cam1)",
                          HasSubstr("minDepthCamID=cam0"), "calCameraRTByChessImgs success"));
  inputs.minImages = 5;
  expectFailed(inputs);
}

TEST_F(HostileInputs, LeastNumberOfImagesOfNoneOrLess) {
  for (const int minImages : {0, -1, std::numeric_limits<int>::min()}) {
    inputs.minImages = minImages;
    EXPECT_EQ(runEntry(inputs).status, 0);
  }
  inputs = inputsWithoutImages(2);
  inputs.minImages = 0;
  const EntryOutcome outcome = expectFailed(inputs);
  EXPECT_THAT(outcome.console, HasSubstr("calRTMatFrom3dPtTo3dPt failed\n"));
}

TEST_F(HostileInputs, BaseIndexFarOutsideBecomesASearch) {
  for (const int base : {std::numeric_limits<int>::min(), std::numeric_limits<int>::max(), 2}) {
    inputs.baseCamIdx = base;
    const EntryOutcome outcome = runEntry(inputs);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.result.baseCamIdx, 0);
  }
}

} // namespace
} // namespace velmorn
