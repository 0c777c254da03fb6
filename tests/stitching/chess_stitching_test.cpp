#include "stitching/chess_stitching.h"

#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "stitching/chess_corners.h"
#include "stitching/relative_pose.h"
#include "stitching/solve_pnp_probe.h"
#include "stitching/stitch_run.h"
#include "support/matchers.h"
#include "support/temp_dir.h"

namespace velmorn {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Key;
using testing::UnorderedElementsAre;
using Lines = std::vector<std::string>;

class ChessStitching : public TempDirTest {
 protected:
  void useRig(int cameraCount, const ViewGroups& groups, const std::vector<std::string>& ids = {}) {
    rig = quickRig(cameraCount, groups, ids);
    inputs = inputsWithImages(rig, dir() / "images");
  }

  // The run with the requested base links everything from the expected one and logs this.
  void expectBase(int requested, int base, int height) {
    std::filesystem::remove("velmorn.log");
    inputs.baseCamIdx = requested;
    const DriverOutcome outcome = runDriver(inputs);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.baseCamIdx, base);
    const auto n = static_cast<int>(rig.ids.size());
    const std::string& baseID = rig.ids[static_cast<std::size_t>(base)];
    EXPECT_EQ(outcome.rotations.size(), static_cast<std::size_t>(n) - 1);
    EXPECT_EQ(outcome.rotations.count(baseID), 0U);
    std::string list;
    for (const std::string& id : rig.ids) list += (list.empty() ? "" : ",") + id;
    EXPECT_EQ(logLines(), (Lines{"camreaIDs (" + list + ")",
                                 "inputCameraIdx=" + std::to_string(requested) +
                                     ".minSubCameraDepth=" + std::to_string(height) +
                                     ",minDepthBaseCameraIdx=" + std::to_string(base) +
                                     ",minDepthCamID=" + baseID}));
  }

  // The run fails for these cameras, in this order, and says so on both channels.
  void expectMissing(int requested, const Lines& camIDs) {
    std::filesystem::remove("velmorn.log");
    inputs.baseCamIdx = requested;
    const DriverOutcome outcome = runDriver(inputs);
    EXPECT_EQ(outcome.status, -1);
    EXPECT_EQ(outcome.baseCamIdx, requested);
    std::string console;
    Lines log;
    for (const std::string& id : camIDs) {
      log.push_back("failed to get camera " + id + " RT");
      console += log.back() + "\n";
    }
    EXPECT_EQ(withoutCornerSearch(outcome.console), console);
    EXPECT_EQ(logLines(), log);
  }

  SyntheticRig rig;
  StitchInputs inputs;
};

TEST_F(ChessStitching, MiddleOfThreeInARowIsTheBase) {
  useRig(3, chainGroups(3), {"L", "M", "N"});
  expectBase(-1, 1, 1);
  EXPECT_EQ(logLines().at(1),
            "inputCameraIdx=-1.minSubCameraDepth=1,minDepthBaseCameraIdx=1,minDepthCamID=M");
}

TEST_F(ChessStitching, RequestedIndexOutsideTheListBecomesASearch) {
  useRig(3, chainGroups(3));
  for (const int requested : {5, 3, -1, -7}) expectBase(requested, 1, 1);
}

TEST_F(ChessStitching, RequestedBaseIsTakenThoughAnotherTreeIsLower) {
  useRig(3, chainGroups(3));
  expectBase(2, 2, 2);
  expectBase(0, 0, 2);
  expectBase(1, 1, 1);
}

TEST_F(ChessStitching, FirstOfSeveralLowestTreesIsTaken) {
  useRig(4, chainGroups(4)); // cam1 and cam2 have height 2
  expectBase(-1, 1, 2);
}

TEST_F(ChessStitching, FirstCameraIsTheBaseWhereAllSeeEachOther) {
  useRig(3, rowGroups(3));
  expectBase(-1, 0, 1);
}

TEST_F(ChessStitching, DiamondIsLinkedFromItsFirstCorner) {
  useRig(4, diamondGroups(4));
  expectBase(-1, 0, 2);
}

TEST_F(ChessStitching, SuccessPrintsNothingOfItsOwn) {
  useRig(2, rowGroups(2));
  const DriverOutcome outcome = runDriver(inputs);
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(withoutCornerSearch(outcome.console), "");
}

TEST_F(ChessStitching, MapsHoldEveryCameraButTheBase) {
  useRig(3, rowGroups(3));
  inputs.baseCamIdx = 1;
  const DriverOutcome outcome = runDriver(inputs);
  EXPECT_THAT(outcome.rotations, ElementsAre(Key("cam0"), Key("cam2")));
  EXPECT_THAT(outcome.translations, ElementsAre(Key("cam0"), Key("cam2")));
  EXPECT_THAT(outcome.residuals, ElementsAre(Key("cam0"), Key("cam2")));
  for (const auto& [id, R] : outcome.rotations) {
    EXPECT_EQ(R.size(), cv::Size(3, 3));
    EXPECT_EQ(R.type(), CV_64FC1);
    EXPECT_EQ(outcome.translations.at(id).size(), cv::Size(1, 3));
    EXPECT_EQ(outcome.translations.at(id).type(), CV_64FC1);
  }
}

// The driver's maps against the pairwise links of the same corners, chained by hand.
TEST_F(ChessStitching, DeeperCamerasAreChainedAlongTheTree) {
  useRig(4, chainGroups(4));
  inputs.baseCamIdx = 0;
  const DriverOutcome outcome = runDriver(inputs);
  ASSERT_EQ(outcome.status, 0);

  const ConsoleCapture quiet;
  CornerMap corners;
  findChessCornerPtByImgs(inputs.paths, corners, inputs.patternSize, false);
  cv::Mat R[4], T[4];
  float residual[4];
  for (int i = 1; i < 4; ++i)
    ASSERT_EQ(calCameraRT("cam" + std::to_string(i), "cam" + std::to_string(i - 1), corners,
                          rig.intrinsicMatrices(), rig.distortionMatrices(), inputs.patternSize,
                          inputs.squareSize, 3, R[i], T[i], residual[i]),
              0);
  const cv::Mat R2 = R[1] * R[2], T2 = R[1] * T[2] + T[1];
  const cv::Mat R3 = R[1] * (R[2] * R[3]), T3 = R[1] * (R[2] * T[3] + T[2]) + T[1];
  EXPECT_EQ(cv::norm(outcome.rotations.at("cam1"), R[1], cv::NORM_INF), 0);
  EXPECT_EQ(cv::norm(outcome.translations.at("cam1"), T[1], cv::NORM_INF), 0);
  EXPECT_LT(cv::norm(outcome.rotations.at("cam2"), R2, cv::NORM_INF), 1e-12);
  EXPECT_LT(cv::norm(outcome.translations.at("cam2"), T2, cv::NORM_INF), 1e-9);
  EXPECT_LT(cv::norm(outcome.rotations.at("cam3"), R3, cv::NORM_INF), 1e-12);
  EXPECT_LT(cv::norm(outcome.translations.at("cam3"), T3, cv::NORM_INF), 1e-9);
  for (int i = 1; i < 4; ++i)
    EXPECT_EQ(outcome.residuals.at("cam" + std::to_string(i)), residual[i]);
}

TEST_F(ChessStitching, CameraWithoutSharedImagesFailsTheRun) {
  useRig(3, {{0, 1}});
  expectMissing(0, {"cam2"});
  expectMissing(1, {"cam2"});
  expectMissing(2, {"cam0", "cam1"});
}

// The height alone decides: the tree of the lonely camera has none.
TEST_F(ChessStitching, TreeThatMissesCamerasCanWinTheSearch) {
  useRig(3, {{0, 1}});
  expectMissing(-1, {"cam0", "cam1"});
}

TEST_F(ChessStitching, EveryMissingCameraIsReportedInListOrder) {
  useRig(4, {{0, 1}, {2, 3}}, {"z", "y", "x", "w"});
  expectMissing(0, {"x", "w"});
}

TEST_F(ChessStitching, UnlinkedIdentifierIsNeverAFormat) {
  useRig(2, {}, {"100%s%n", "a b"});
  inputs.minImages = 0; // no shots: no images either
  inputs.baseCamIdx = 1;
  const DriverOutcome outcome = runDriver(inputs);
  EXPECT_EQ(outcome.status, -1);
  EXPECT_EQ(outcome.console, "calRTMatFrom3dPtTo3dPt failed\nfailed to get camera 100%s%n RT\n");
  EXPECT_THAT(logLines(),
              ElementsAre("calRTMatFrom3dPtTo3dPt failed", "failed to get camera 100%s%n RT"));
}

TEST_F(ChessStitching, IdentifiersOfAnyTextAreLoggedAsTheyAre) {
  const std::string longest(511, 'n');
  useRig(3, rowGroups(3), {"100%s%n%d", "left camera/upper", longest});
  expectBase(-1, 0, 1);
  expectBase(2, 2, 1);
}

TEST_F(ChessStitching, FailedPoseLeavesThePairUnlinked) {
  useRig(2, rowGroups(2));
  inputs.baseCamIdx = 0;
  const SolvePnpProbe probe(0);
  const DriverOutcome outcome = runDriver(inputs);
  EXPECT_EQ(outcome.status, -1);
  EXPECT_EQ(withoutCornerSearch(outcome.console), "solvePnP error\nfailed to get camera cam1 RT\n");
  EXPECT_THAT(logLines(), ElementsAre("solvePnP errorr", "failed to get camera cam1 RT"));
}

// Per root one pair is tried, with two poses per shared image.
TEST_F(ChessStitching, SearchKeepsNothingBetweenTrees) {
  useRig(2, rowGroups(2));
  const SolvePnpProbe probe;
  EXPECT_EQ(runDriver(inputs).status, 0);
  EXPECT_EQ(probe.calls().size(), 2U * 2 * 3);
}

TEST_F(ChessStitching, LeastNumberOfImagesHoldsForEveryLink) {
  useRig(3, {{0, 1}, {0, 1}, {1, 2}}); // 6 images of cam0 and cam1, 3 of cam1 and cam2
  inputs.minImages = 4;
  expectMissing(1, {"cam2"});
  inputs.minImages = 3;
  expectBase(1, 1, 1);
}

TEST_F(ChessStitching, ImagesOfCamerasOutsideTheListAreSearchedAllTheSame) {
  useRig(2, rowGroups(2));
  inputs.paths["another"] = {"nowhere.png"};
  const DriverOutcome outcome = runDriver(inputs);
  EXPECT_EQ(outcome.status, 0);
  EXPECT_THAT(outcome.console, HasSubstr("find corner: nowhere.png\nload nowhere.png failed\n"));
  EXPECT_THAT(outcome.rotations, ElementsAre(Key("cam1")));
}

TEST_F(ChessStitching, RepeatedIdentifierIsLinkedToItself) {
  useRig(2, rowGroups(2));
  inputs.camIDs = {"cam0", "cam0", "cam1"};
  const DriverOutcome outcome = runDriver(inputs);
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.baseCamIdx, 0);
  EXPECT_THAT(outcome.rotations, ElementsAre(Key("cam0"), Key("cam1")));
  EXPECT_THAT(transformOf(outcome.rotations.at("cam0"), outcome.translations.at("cam0")),
              extrinsicNear(cv::Matx44d::eye(), 1e-4, 1e-3));
  EXPECT_THAT(logLines(),
              ElementsAre("camreaIDs (cam0,cam0,cam1)",
                          "inputCameraIdx=-1.minSubCameraDepth=1,minDepthBaseCameraIdx=0,"
                          "minDepthCamID=cam0"));
}

TEST_F(ChessStitching, CornerImagesAreSavedOnRequest) {
  useRig(2, rowGroups(2));
  runDriver(inputs);
  EXPECT_FALSE(std::filesystem::exists("chessImgs"));
  inputs.saveCornerImages = true;
  runDriver(inputs);
  Lines names;
  for (const auto& entry : std::filesystem::directory_iterator("chessImgs"))
    names.push_back(entry.path().filename().string());
  EXPECT_THAT(names, UnorderedElementsAre("corner-000-cam0.bmp", "corner-001-cam0.bmp",
                                          "corner-002-cam0.bmp", "corner-000-cam1.bmp",
                                          "corner-001-cam1.bmp", "corner-002-cam1.bmp"));
}

TEST_F(ChessStitching, LogThatCannotBeWrittenChangesNothing) {
  useRig(2, rowGroups(2));
  const DriverOutcome expected = runDriver(inputs);
  std::filesystem::remove("velmorn.log");
  std::filesystem::create_directory("velmorn.log");
  const DriverOutcome outcome = runDriver(inputs);
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.console, expected.console);
  EXPECT_EQ(cv::norm(outcome.rotations.at("cam1"), expected.rotations.at("cam1")), 0);
}

TEST_F(ChessStitching, OpencvsRefusalIsPassedOn) {
  useRig(2, rowGroups(2));
  inputs.patternSize = {2, 2};
  EXPECT_THROW(runDriver(inputs), cv::Exception);
  EXPECT_THAT(logLines(), IsEmpty());
}

} // namespace
} // namespace velmorn
