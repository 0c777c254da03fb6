// Board positions of simulated rigs.
#include "velmorn/simulate_shots.h"

#include <gmock/gmock.h>

#include <cmath>
#include <set>

#include "tools/expect_tool_error.h"
#include "velmorn/code_board_picture.h"
#include "velmorn/pose.h"
#include "velmorn/simulate_code_shots.h"
#include "velmorn/simulate_plain_shots.h"

namespace velmorn::tool {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

SimulateJob jobFor(std::size_t cameras, SimulatedKind kind = SimulatedKind::kConveyor) {
  SimulateJob job;
  job.kind = kind;
  job.height = 1200;
  job.cameras.resize(cameras);
  job.plain.shots.shots = 5;
  job.code.shots.shots = 3;
  return job;
}

std::vector<BoardPosition> plainShotsOf(const SimulateJob& job) {
  const SimulatedRig rig = simulatedRig(job);
  return plainShots(job, rig, plainBoardOf(job, rig));
}

TEST(RoundLengths, HalvesOfTheFirstDigit) {
  EXPECT_DOUBLE_EQ(roundedUp(40.6), 45);
  EXPECT_DOUBLE_EQ(roundedUp(45), 45);
  EXPECT_DOUBLE_EQ(roundedUp(0.0651), 0.07);
  EXPECT_DOUBLE_EQ(roundedUp(9.6), 10);
  EXPECT_DOUBLE_EQ(roundedDown(49.9), 45);
  EXPECT_DOUBLE_EQ(roundedDown(45), 45);
  EXPECT_DOUBLE_EQ(roundedDown(0.069), 0.065);
}

TEST(Groups, NeighboursOrAll) {
  const SimulateJob row = jobFor(3);
  EXPECT_THAT(groupsOf(row, row.plain.shots), ElementsAre(ElementsAre(0, 1), ElementsAre(1, 2)));
  const SimulateJob ring = jobFor(3, SimulatedKind::kPlatform);
  EXPECT_THAT(groupsOf(ring, ring.plain.shots), ElementsAre(ElementsAre(0, 1, 2)));
  SimulatedShots own;
  own.groups = {{2, 0}};
  EXPECT_THAT(groupsOf(row, own), ElementsAre(ElementsAre(2, 0)));
  EXPECT_THAT(absentFor(row, own, {2, 0}), IsEmpty());
  own.onlyGroups = true;
  EXPECT_THAT(absentFor(row, own, {2, 0}), ElementsAre(1));
}

class EverySeed : public testing::TestWithParam<int> {};

// Every pair of neighbours sees its five boards; these are tilted in different directions.
TEST_P(EverySeed, NeighboursSeeTheirBoards) {
  SimulateJob job = jobFor(3);
  job.seed = GetParam();
  const SimulatedRig rig = simulatedRig(job);
  const PlainBoard board = plainBoardOf(job, rig);
  const std::vector<BoardPosition> shots = plainShots(job, rig, board);
  ASSERT_EQ(shots.size(), 10U);
  std::set<int> quarters;
  for (std::size_t shot = 0; shot < shots.size(); ++shot) {
    const cv::Matx44d& pose = shots[shot].worldFromBoard;
    for (const std::size_t camera : {shot / 5, shot / 5 + 1}) {
      EXPECT_EQ(plainViewOf(rig.cameras[camera], board, pose), PlainView::kUsable);
    }
    const double tilt = std::acos(-pose(2, 2)) * 180 / CV_PI;
    EXPECT_GT(tilt, 11.9);
    EXPECT_LT(tilt, 35.1);
    quarters.insert((pose(0, 2) > 0 ? 1 : 0) + (pose(1, 2) > 0 ? 2 : 0));
    for (const cv::Point3d& p : outlineOf(board)) {
      EXPECT_GT((pose * cv::Vec4d(p.x, p.y, p.z, 1))[2], 0);
    }
  }
  EXPECT_GE(quarters.size(), 3U);
}

INSTANTIATE_TEST_SUITE_P(PlainShots, EverySeed, testing::Range(1, 9));

TEST(PlainShots, SquaresHaveTheirPixels) {
  SimulateJob job = jobFor(2);
  const SimulatedRig rig = simulatedRig(job);
  EXPECT_DOUBLE_EQ(plainBoardOf(job, rig).square, 45); // 34 * 1200 / 1000
  job.plain.square = 33;
  EXPECT_EQ(plainBoardOf(job, rig).square, 33);
}

// Half the pixels would want squares of 85 and a paper 970 long; two cameras see 1030 in common.
TEST(PlainShots, SquaresLeaveRoomForTheBoard) {
  SimulateJob job = jobFor(2);
  for (SimulatedCamera& camera : job.cameras) camera.lens.imageSize = {640, 480};
  const SimulatedRig rig = simulatedRig(job);
  const PlainBoard board = plainBoardOf(job, rig);
  EXPECT_GE(board.square, 50);
  EXPECT_LE(board.square, 60);
  EXPECT_EQ(plainShots(job, rig, board).size(), 5U);
}

TEST(PlainShots, AllSeeTheBoardOnAPlatform) {
  const SimulateJob job = jobFor(5, SimulatedKind::kPlatform);
  const SimulatedRig rig = simulatedRig(job);
  const PlainBoard board = plainBoardOf(job, rig);
  for (const BoardPosition& shot : plainShots(job, rig, board)) {
    for (const SceneCamera& camera : rig.cameras) {
      EXPECT_EQ(plainViewOf(camera, board, shot.worldFromBoard), PlainView::kUsable);
    }
  }
}

TEST(PlainShots, OnlyGroupsLeavesTheOthersOut) {
  SimulateJob job = jobFor(3);
  job.plain.shots.groups = {{0, 1}};
  job.plain.shots.onlyGroups = true;
  const std::vector<BoardPosition> shots = plainShotsOf(job);
  ASSERT_EQ(shots.size(), 5U);
  for (const BoardPosition& shot : shots) EXPECT_THAT(shot.absent, ElementsAre(2));
}

TEST(PlainShots, SayWhereThereIsNoPlace) {
  SimulateJob job = jobFor(2);
  job.plain.square = 300;
  EXPECT_EQ(toolError([&] { plainShotsOf(job); }),
            "no place for the plain board found where cam1, cam2 see the whole of it; smaller "
            "squares, fewer corners or cameras closer together help");
  job.plain.shots.groups = {{1}};
  EXPECT_EQ(toolError([&] { plainShotsOf(job); }).substr(0, 61),
            "no place for the plain board found where cam2 sees the whole ");
}

// A camera on its head would take the last corner for the first one.
TEST(PlainShots, CameraOnItsHeadHasNoPlace) {
  SimulateJob job = jobFor(2);
  job.cameras[0].place = SimulatedPlace{{0, 0, 1200}, 0, 0, 0};
  job.cameras[1].place = SimulatedPlace{{200, 0, 1200}, 0, 0, 180};
  EXPECT_EQ(toolError([&] { plainShotsOf(job); }).substr(0, 34),
            "no place for the plain board found");
}

TEST(CodeShots, BoardCoversTheGroundAndStaysAboveIt) {
  const SimulateJob job = jobFor(4);
  const SimulatedRig rig = simulatedRig(job);
  const CodeBoardSpec board = codeBoardOf(job, rig);
  EXPECT_DOUBLE_EQ(board.square, 65); // 54 * 0.94 * 1200 / 1000
  EXPECT_NEAR(board.columns * board.square, 0.9 * rig.seen.width, board.square);
  EXPECT_NEAR(board.rows * board.square, 0.9 * rig.seen.height, board.square);
  const std::vector<BoardPosition> shots = codeShots(job, rig, board);
  ASSERT_EQ(shots.size(), 3U);
  const double beyond = (kPlainRim + kCodeBoardMargin) * board.square;
  for (const BoardPosition& shot : shots) {
    for (const double x : {-beyond, board.columns * board.square + beyond}) {
      for (const double y : {-beyond, board.rows * board.square + beyond}) {
        const double z = (shot.worldFromBoard * cv::Vec4d(x, y, 0, 1))[2];
        EXPECT_GT(z, 0);
        EXPECT_LT(z, 0.5 * job.height);
      }
    }
    EXPECT_GT(shot.worldFromBoard(0, 0), 0.98);
    EXPECT_LT(shot.worldFromBoard(2, 2), -0.97);
  }
}

TEST(CodeShots, TakeTheJobsBoardAndGroups) {
  SimulateJob job = jobFor(3);
  job.code.squares = cv::Size(20, 12);
  job.code.square = 80;
  job.code.shots.groups = {{0, 1}, {1, 2}};
  job.code.shots.onlyGroups = true;
  const SimulatedRig rig = simulatedRig(job);
  const CodeBoardSpec board = codeBoardOf(job, rig);
  EXPECT_EQ(board.columns, 20);
  EXPECT_EQ(board.rows, 12);
  EXPECT_EQ(board.square, 80);
  const std::vector<BoardPosition> shots = codeShots(job, rig, board);
  ASSERT_EQ(shots.size(), 6U);
  EXPECT_THAT(shots[0].absent, ElementsAre(2));
  EXPECT_THAT(shots[5].absent, ElementsAre(0));
}

} // namespace
} // namespace velmorn::tool
