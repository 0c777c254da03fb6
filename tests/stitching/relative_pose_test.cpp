#include "stitching/relative_pose.h"

#include <filesystem>
#include <limits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <opencv2/calib3d.hpp>

#include "geometry/rigid_transform.h"
#include "stitching/solve_pnp_probe.h"
#include "support/matchers.h"
#include "support/synthetic_rig.h"
#include "support/temp_dir.h"

namespace velmorn {
namespace {

using testing::ElementsAre;

constexpr float kSquare = 25;

RigOptions fiveShots() {
  RigOptions options;
  options.shotsPerGroup = 5;
  return options;
}

// Two cameras, "cam0" and "cam1", that both saw five board positions, without noise.
class RelativePose : public TempDirTest {
 protected:
  int link(const std::string& camA, const std::string& camB, int minImages = 3) {
    const ConsoleCapture capture;
    const int status = calCameraRT(camA, camB, corners, intrinsics, distortions,
                                   rig.board.patternSize(), kSquare, minImages, R, T, residual);
    console = capture.text();
    return status;
  }

  void forget(const std::string& camID, std::initializer_list<std::size_t> images) {
    for (const std::size_t image : images) corners[camID][image].clear();
  }

  void expectFailure(int status, const std::string& consoleText,
                     const std::vector<std::string>& log) {
    EXPECT_EQ(status, -1);
    EXPECT_EQ(console, consoleText);
    EXPECT_EQ(logLines(), log);
  }

  SyntheticRig rig = makeRig(fiveShots());
  CornerMap corners = rig.cornerMap(0);
  MatrixMap intrinsics = rig.intrinsicMatrices(), distortions = rig.distortionMatrices();
  cv::Mat R, T;
  float residual = -1;
  std::string console;
};

// The whole link from OpenCV's calls and the rigid fit, over the given images.
struct PlainLink {
  cv::Mat R, T;
  float residual = -1;
};
PlainLink linkPlainly(const SyntheticRig& rig, const CornerMap& corners,
                      const std::vector<std::size_t>& images) {
  const MatrixMap intrinsics = rig.intrinsicMatrices(), distortions = rig.distortionMatrices();
  std::vector<tagOzKPoint3Df32> in[2];
  for (const std::size_t k : images)
    for (const int camera : {0, 1}) {
      const std::string id = rig.ids[static_cast<std::size_t>(camera)];
      cv::Mat r, t, camFromBoard;
      cv::solvePnP(boardCorners(rig.board), corners.at(id)[k], intrinsics.at(id),
                   distortions.at(id), r, t);
      cv::Rodrigues(r, camFromBoard);
      for (const cv::Point3f& point : boardCorners(rig.board)) {
        const cv::Mat p = camFromBoard * cv::Mat(cv::Vec3d(point.x, point.y, point.z)) + t;
        in[camera].push_back({static_cast<float>(p.at<double>(0)),
                              static_cast<float>(p.at<double>(1)),
                              static_cast<float>(p.at<double>(2))});
      }
    }
  PlainLink link;
  calRTMatFrom3dPtTo3dPt(in[1].data(), in[0].data(), static_cast<int>(in[0].size()), link.R, link.T,
                         &link.residual);
  return link;
}

TEST_F(RelativePose, IsCamAFromCamB) {
  ASSERT_EQ(link("cam0", "cam1"), 0);
  EXPECT_THAT(transformOf(R, T), extrinsicNear(rig.camFromCam(0, 1), 1e-3, 0.01));
  ASSERT_EQ(link("cam1", "cam0"), 0);
  EXPECT_THAT(transformOf(R, T), extrinsicNear(rig.camFromCam(1, 0), 1e-3, 0.01));
}

TEST_F(RelativePose, SaysNothingOnSuccess) {
  ASSERT_EQ(link("cam0", "cam1"), 0);
  EXPECT_EQ(console, "");
  EXPECT_FALSE(std::filesystem::exists("velmorn.log"));
}

TEST_F(RelativePose, OutputsAreDoublesOfTheStatedShapes) {
  ASSERT_EQ(link("cam0", "cam1"), 0);
  EXPECT_EQ(R.size(), cv::Size(3, 3));
  EXPECT_EQ(T.size(), cv::Size(1, 3));
  EXPECT_EQ(R.type(), CV_64FC1);
  EXPECT_EQ(T.type(), CV_64FC1);
}

TEST_F(RelativePose, FitsAllSharedCornersAtOnce) {
  corners = rig.cornerMap(0.3);
  ASSERT_EQ(link("cam0", "cam1"), 0);
  const PlainLink expected = linkPlainly(rig, corners, {0, 1, 2, 3, 4});
  EXPECT_LT(cv::norm(R, expected.R, cv::NORM_INF), 1e-7);
  EXPECT_LT(cv::norm(T, expected.T, cv::NORM_INF), 1e-4);
  EXPECT_NEAR(residual, expected.residual, 1e-4);
}

TEST_F(RelativePose, ResidualIsALengthThatGrowsWithTheNoise) {
  ASSERT_EQ(link("cam0", "cam1"), 0);
  EXPECT_GE(residual, 0);
  EXPECT_LT(residual, 0.005F);
  corners = rig.cornerMap(0.5);
  ASSERT_EQ(link("cam0", "cam1"), 0);
  EXPECT_GT(residual, 0.05F);
  EXPECT_LT(residual, 5);
}

TEST_F(RelativePose, SquareSizeGivesTheUnit) {
  const ConsoleCapture quiet;
  ASSERT_EQ(calCameraRT("cam0", "cam1", corners, intrinsics, distortions, rig.board.patternSize(),
                        0.025F, 3, R, T, residual),
            0);
  cv::Matx44d inMetres = rig.camFromCam(0, 1);
  for (int row = 0; row < 3; ++row) inMetres(row, 3) /= 1000;
  EXPECT_THAT(transformOf(R, T), extrinsicNear(inMetres, 1e-3, 1e-5));
}

TEST_F(RelativePose, OnlyImagesThatBothSawCount) {
  corners = rig.cornerMap(0.3);
  forget("cam0", {2, 4}); // saw 0, 1, 3
  forget("cam1", {0, 4}); // saw 1, 2, 3
  expectFailure(link("cam0", "cam1", 3), "", {});

  const SolvePnpProbe probe;
  ASSERT_EQ(link("cam0", "cam1", 2), 0);
  EXPECT_EQ(probe.calls().size(), 4U);
  const PlainLink expected = linkPlainly(rig, corners, {1, 3});
  EXPECT_LT(cv::norm(R, expected.R, cv::NORM_INF), 1e-7);
  EXPECT_LT(cv::norm(T, expected.T, cv::NORM_INF), 1e-4);
}

TEST_F(RelativePose, ListWithAnotherNumberOfCornersIsNotShared) {
  corners["cam0"][0].pop_back();
  corners["cam1"][2].emplace_back(1.0F, 2.0F);
  expectFailure(link("cam0", "cam1", 4), "", {});
  EXPECT_EQ(link("cam0", "cam1", 3), 0);
  EXPECT_THAT(transformOf(R, T), extrinsicNear(rig.camFromCam(0, 1), 1e-3, 0.01));
}

TEST_F(RelativePose, OneSharedImageIsEnoughWhenAllowed) {
  forget("cam0", {0, 1, 2, 3});
  ASSERT_EQ(link("cam0", "cam1", 1), 0);
  EXPECT_THAT(transformOf(R, T), extrinsicNear(rig.camFromCam(0, 1), 0.01, 0.1));
}

TEST_F(RelativePose, UnknownCameraIsReportedOnBothChannels) {
  const std::string message = "calCameraRT func: camera ID is error";
  expectFailure(link("none", "cam1"), message + "\n", {message});
  expectFailure(link("cam0", "none"), message + "\n", {message, message});
  expectFailure(link("none", "neither"), message + "\n", {message, message, message});
}

TEST_F(RelativePose, DifferentImageCountsAreReportedOnTheConsoleOnly) {
  corners["cam1"].push_back(corners["cam1"][0]); // five images are still shared
  expectFailure(link("cam0", "cam1"), "calCameraRT func: the number of corner is error\n", {});
  expectFailure(link("cam1", "cam0"), "calCameraRT func: the number of corner is error\n", {});
}

TEST_F(RelativePose, ImageCountsAreCheckedBeforeTheSharedImages) {
  corners["cam1"].clear();
  expectFailure(link("cam0", "cam1"), "calCameraRT func: the number of corner is error\n", {});
}

TEST_F(RelativePose, TooFewSharedImagesFailSilently) {
  expectFailure(link("cam0", "cam1", 6), "", {});
}

TEST_F(RelativePose, LeastNumberOfZeroOrLessLeavesTheFitToFail) {
  forget("cam0", {0, 1, 2, 3, 4});
  const std::string message = "calRTMatFrom3dPtTo3dPt failed";
  expectFailure(link("cam0", "cam1", 0), message + "\n", {message});
  expectFailure(link("cam0", "cam1", -1), message + "\n", {message, message});
  expectFailure(link("cam0", "cam1", std::numeric_limits<int>::min()), message + "\n",
                {message, message, message});
}

TEST_F(RelativePose, PoseFailureIsReportedWithATextPerChannel) {
  for (const int failingCall : {0, 1, 2, 7}) {
    std::filesystem::remove("velmorn.log");
    const SolvePnpProbe probe(failingCall);
    expectFailure(link("cam0", "cam1"), "solvePnP error\n", {"solvePnP errorr"});
    EXPECT_EQ(probe.calls().size(), static_cast<std::size_t>(failingCall) + 1);
  }
}

TEST_F(RelativePose, PosesAreEstimatedImageByImageCamAFirst) {
  forget("cam0", {1});
  const SolvePnpProbe probe;
  ASSERT_EQ(link("cam0", "cam1"), 0);
  ASSERT_EQ(probe.calls().size(), 8U);
  std::size_t call = 0;
  for (const std::size_t image : {0U, 2U, 3U, 4U})
    for (const char* id : {"cam0", "cam1"}) {
      const SolvePnpCall& made = probe.calls()[call++];
      EXPECT_EQ(made.corners, corners[id][image]);
      EXPECT_EQ(made.boardPoints, boardCorners(rig.board));
      EXPECT_EQ(cv::norm(made.intrinsic, intrinsics[id], cv::NORM_INF), 0);
      EXPECT_EQ(cv::norm(made.distortion, distortions[id], cv::NORM_INF), 0);
      EXPECT_FALSE(made.useExtrinsicGuess);
      EXPECT_EQ(made.flags, cv::SOLVEPNP_ITERATIVE);
    }
}

TEST_F(RelativePose, CameraCanBeLinkedToItself) {
  ASSERT_EQ(link("cam0", "cam0"), 0);
  EXPECT_THAT(transformOf(R, T), extrinsicNear(cv::Matx44d::eye(), 1e-4, 1e-3));
}

TEST_F(RelativePose, RepeatedCallGivesTheSameBits) {
  corners = rig.cornerMap(0.1);
  ASSERT_EQ(link("cam0", "cam1"), 0);
  const cv::Mat firstR = R.clone(), firstT = T.clone();
  const float firstResidual = residual;
  R = cv::Mat();
  T = cv::Mat();
  ASSERT_EQ(link("cam0", "cam1"), 0);
  EXPECT_EQ(cv::norm(R, firstR, cv::NORM_INF), 0);
  EXPECT_EQ(cv::norm(T, firstT, cv::NORM_INF), 0);
  EXPECT_EQ(residual, firstResidual);
}

TEST_F(RelativePose, PercentSignsInIdentifiersAreNoFormat) {
  corners["%s%n"] = corners["cam0"];
  intrinsics["%s%n"] = intrinsics["cam0"];
  distortions["%s%n"] = distortions["cam0"];
  EXPECT_EQ(link("%s%n", "cam1"), 0);
  expectFailure(link("%n%s", "cam1"), "calCameraRT func: camera ID is error\n",
                {"calCameraRT func: camera ID is error"});
}

// Tenth-pixel noise on every pair that sees the board together, whatever tree comes of it.
TEST(RelativePoseAccuracy, EveryPairOfARigIsWithinTheFigures) {
  RigOptions options;
  options.cameraCount = 10;
  options.shotsPerGroup = 15;
  options.imageSize = {1280, 960};
  options.focal = 1024;
  options.board.width = 11;
  options.board.height = 8;
  options.board.square = 20;
  for (const ViewGroups& groups : {rowGroups(10), chainGroups(10), diamondGroups(10)}) {
    options.groups = groups;
    const SyntheticRig rig = makeRig(options);
    const CornerMap corners = rig.cornerMap(0.1);
    for (const std::vector<int>& group : groups)
      for (std::size_t i = 1; i < group.size(); ++i) {
        const int target = group[i], source = group[0];
        cv::Mat R, T;
        float residual = 0;
        ASSERT_EQ(
            calCameraRT(rig.ids[static_cast<std::size_t>(target)],
                        rig.ids[static_cast<std::size_t>(source)], corners, rig.intrinsicMatrices(),
                        rig.distortionMatrices(), rig.board.patternSize(), 20, 10, R, T, residual),
            0);
        const cv::Matx44d truth = rig.camFromCam(target, source);
        EXPECT_THAT(transformOf(R, T), extrinsicNear(truth, 0.02, 1e-3 * translationLength(truth)))
            << "cameras " << target << " and " << source;
      }
  }
}

} // namespace
} // namespace velmorn
