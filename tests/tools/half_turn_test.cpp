// Boards that look the same after half a turn, before two cameras.
#include "velmorn/half_turn.h"

#include <gmock/gmock.h>

#include "support/synthetic_rig.h"
#include "support/temp_dir.h"
#include "tools/expect_tool_error.h"
#include "tools/process.h"
#include "tools/rig_builder.h"
#include "tools/stitched_sample.h"

namespace velmorn::tool {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

TEST(HalfTurn, DependsOnWhetherTheNumbersAreEven) {
  EXPECT_TRUE(looksSameAfterHalfTurn({8, 6}));
  EXPECT_TRUE(looksSameAfterHalfTurn({9, 7}));
  EXPECT_FALSE(looksSameAfterHalfTurn({9, 6}));
  EXPECT_FALSE(looksSameAfterHalfTurn({8, 5}));
}

// A link with the given residual before squares of 20.
std::string refusalOf(tagOzKSize board, float residual) {
  Rig rig;
  rig.board = board;
  rig.square = 20;
  StitchedRig stitched = stitchedSample();
  stitched.cameras[1].residual = residual;
  return toolError([&] { requireSameFirstCorner(rig, stitched); });
}

TEST(HalfTurn, RefusesAResidualAboveAQuarterOfASquare) {
  EXPECT_THAT(refusalOf({8, 6}, 5.1F),
              AllOf(HasSubstr("\"right\" and \"left\" probably disagree"), HasSubstr("5.1")));
  Rig rig;
  rig.board = {8, 6};
  rig.square = 20;
  StitchedRig stitched = stitchedSample();
  stitched.cameras[1].residual = 5.0F;
  EXPECT_NO_THROW(requireSameFirstCorner(rig, stitched));
  stitched.cameras[1].residual = 50.0F;
  rig.board = {9, 6};
  EXPECT_NO_THROW(requireSameFirstCorner(rig, stitched));
  rig.board = {};
  rig.hasDataCodes = true;
  EXPECT_NO_THROW(requireSameFirstCorner(rig, stitched));
}

class HalfTurnProcess : public TempDirTest {
 protected:
  // Stitches a rendered pair; with `turned` the second camera is upside down.
  ProcessResult stitch(int columns, bool turned) {
    RigOptions options;
    options.board.width = columns;
    options.shotsPerGroup = 4;
    options.distorted = false;
    options.ids = {"A", "B"};
    SyntheticRig rig = makeRig(options);
    if (turned) rig.camFromWorld[1] = cv::Matx44d::diag({-1, -1, 1, 1}) * rig.camFromWorld[1];
    writeRenderedRig(dir(), rig);
    distance_ = cv::norm(cv::Vec3d(rig.camFromCam(0, 1)(0, 3), rig.camFromCam(0, 1)(1, 3),
                                   rig.camFromCam(0, 1)(2, 3)));
    return runProcess(VELMORN_TOOL, {"stitch", "rig.json"}, dir());
  }

  void expectTruth() {
    const auto result = nlohmann::json::parse(readFile(dir() / "result.json"));
    EXPECT_NEAR(result["cameras"][1]["distanceToBase"], distance_, 0.002 * distance_);
    EXPECT_LT(result["cameras"][1]["residual"], 1);
  }

  double distance_ = 0; // between the cameras
};

TEST_F(HalfTurnProcess, RefusesCamerasThatDisagree) {
  const ProcessResult result = stitch(8, true);
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(result.err, AllOf(HasSubstr("looks the same after half a turn"),
                                HasSubstr("cameras \"B\" and \"A\" probably disagree")));
  EXPECT_FALSE(std::filesystem::exists(dir() / "result.json"));
  const ProcessResult check = runProcess(VELMORN_TOOL, {"check", "result.json"}, dir());
  EXPECT_EQ(check.status, 3);
  EXPECT_THAT(check.out, HasSubstr("take the board for turned by half a turn"));
}

TEST_F(HalfTurnProcess, WarnsOnlyWhereTheCamerasAgree) {
  const ProcessResult result = stitch(8, false);
  ASSERT_EQ(result.status, 0) << result.err;
  EXPECT_THAT(result.err, HasSubstr("looks the same after half a turn"));
  expectTruth();
}

TEST_F(HalfTurnProcess, SaysNothingAboutASafeBoard) {
  const ProcessResult result = stitch(9, true);
  ASSERT_EQ(result.status, 0) << result.err;
  EXPECT_THAT(result.err, Not(HasSubstr("half a turn")));
  expectTruth();
}

} // namespace
} // namespace velmorn::tool
