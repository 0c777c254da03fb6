// The older form of stitching by data-code board.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "datacode/data_code_rig.h"
#include "support/matchers.h"
#include "support/temp_dir.h"

namespace velmorn {
namespace {

using testing::EndsWith;
using testing::HasSubstr;

constexpr double kDegrees = 2e-4, kLength = 2e-3;

class LastPoseStitching : public TempDirTest {
 protected:
  DataCodeOutcome run(const DataCodeRig& rig, DataCodeInputs inputs) {
    fake::play(rig.script());
    return runDataCodeBackup(inputs);
  }
};

TEST_F(LastPoseStitching, CamerasAreLinkedByTheirLastPoses) {
  const DataCodeRig rig({"11", "11", "11"}, dir());
  DataCodeInputs inputs = rig.inputs();
  inputs.baseCamIdx = 2;
  const DataCodeOutcome out = run(rig, inputs);
  ASSERT_EQ(out.status, 0);
  EXPECT_EQ(out.result.cameraNum, 3);
  EXPECT_EQ(out.result.baseCamIdx, 2);
  EXPECT_THAT(transformOf(out.result.camExtrinsic[0]),
              extrinsicNear(rig.camFromCam(2, 0), kDegrees, kLength));
  for (const int e : {0, 4, 10, 15}) EXPECT_EQ(out.result.camExtrinsic[2].data[e], 1);
  EXPECT_EQ(out.result.camExtrinsic[2].data[5], 0);
  EXPECT_EQ(out.result.camRTError[2], 0);
  EXPECT_TRUE(isUntouchedFrom(out.result, 3));
  EXPECT_THAT(out.console, EndsWith("\nbaseCamIdx=2\n"));
  EXPECT_EQ(logLines().back(), "calCameraRTByChessImgs success");
}

TEST_F(LastPoseStitching, UnknownBaseIsTheFirstCamera) {
  const DataCodeRig rig({"1", "1"}, dir());
  for (const int request : {-1, 2}) {
    DataCodeInputs inputs = rig.inputs();
    inputs.baseCamIdx = request;
    EXPECT_EQ(run(rig, inputs).result.baseCamIdx, 0);
  }
}

// The poses of different board positions are put together: the result is that of a board that did
// not move.
TEST_F(LastPoseStitching, PosesOfDifferentShotsAreTakenTogether) {
  const DataCodeRig rig({"10", "11"}, dir());
  const DataCodeOutcome out = run(rig, rig.inputs());
  ASSERT_EQ(out.status, 0);
  const cv::Matx44d expected = rig.camFromBoard(0, 0) * inverseOf(rig.camFromBoard(1, 1));
  EXPECT_THAT(transformOf(out.result.camExtrinsic[1]), extrinsicNear(expected, kDegrees, kLength));
}

TEST_F(LastPoseStitching, FewCornersAreNotRefused) {
  const DataCodeRig rig({"1", "1"}, dir());
  std::vector<fake::Shot> script = rig.script();
  for (fake::Shot& shot : script) shot.corners.resize(7);
  fake::play(script);
  DataCodeInputs inputs = rig.inputs();
  inputs.minCornerNum = 100; // not one of its arguments
  EXPECT_EQ(runDataCodeBackup(inputs).status, 0);
}

TEST_F(LastPoseStitching, CameraWithoutAPoseFailsTheCall) {
  const DataCodeRig rig({"1", "1", "0"}, dir());
  const DataCodeOutcome out = run(rig, rig.inputs());
  EXPECT_EQ(out.status, -1);
  EXPECT_TRUE(isUntouchedFrom(out.result, 0));
  EXPECT_THAT(out.console, HasSubstr("findDataCodeChessCornerPtAndWorldPt failed..image path is "));
}

TEST_F(LastPoseStitching, FatalCodesStopTheRun) {
  const DataCodeRig rig({"1", "1"}, dir());
  std::vector<fake::Shot> script = rig.script();
  script[0].dcCreate = -1303;
  fake::play(script);
  DataCodeInputs inputs = rig.inputs();
  EXPECT_EQ(runDataCodeBackup(inputs).status, -1110);
  EXPECT_EQ(fake::records().size(), 1U);
}

TEST_F(LastPoseStitching, LastCornerImageRemains) {
  const DataCodeRig rig({"11",
                         "1"
                         "1"},
                        dir());
  DataCodeInputs inputs = rig.inputs();
  inputs.saveCornerImgs = true;
  EXPECT_EQ(run(rig, inputs).status, 0);
  EXPECT_TRUE(std::filesystem::exists("chessImgs/corner-P.bmp"));
  EXPECT_TRUE(std::filesystem::exists("chessImgs/corner-Q.bmp"));
  EXPECT_FALSE(std::filesystem::exists("chessImgs/corner-P-0.bmp"));
}

} // namespace
} // namespace velmorn
