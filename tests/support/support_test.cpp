// The test support's own promises: truth of the renderer, matchers, rigs, log reader.
#include <cmath>
#include <filesystem>
#include <limits>
#include <stdexcept>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <opencv2/calib3d.hpp>
#include <opencv2/imgcodecs.hpp>

#include "support/board_renderer.h"
#include "support/matchers.h"
#include "support/synthetic_rig.h"
#include "support/temp_dir.h"

namespace velmorn {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

cv::Matx44d turnedBy(double degrees, const cv::Vec3d& T) {
  cv::Matx33d R;
  cv::Rodrigues(cv::Vec3d(0, degrees * CV_PI / 180, 0), R);
  return transformOf(R, T);
}

TEST(Matchers, MeasureSmallAndLargeAngles) {
  for (const double degrees : {1e-7, 0.02, 1.0, 90.0, 179.9})
    EXPECT_NEAR(rotationDegreesApart(turnedBy(10 + degrees, {}), turnedBy(10, {})), degrees,
                1e-9 + 1e-9 * degrees);
}

TEST(Matchers, SayWhichPartFailed) {
  const auto matcher = extrinsicNear(turnedBy(0, {0, 0, 100}), 0.5, 1);
  testing::StringMatchResultListener rotation, translation;
  EXPECT_FALSE(matcher.MatchAndExplain(turnedBy(2, {0, 0, 100}), &rotation));
  EXPECT_THAT(rotation.str(), HasSubstr("2 degrees off (FAILED) and whose translation is 0 off"));
  EXPECT_FALSE(matcher.MatchAndExplain(turnedBy(0, {0, 3, 100}), &translation));
  EXPECT_THAT(translation.str(),
              HasSubstr("0 degrees off and whose translation is 3 off (FAILED)"));
}

TEST(Matchers, AcceptWhatIsNearAndRefuseWhatIsNoNumber) {
  const cv::Matx44d expected = turnedBy(30, {1, 2, 3});
  EXPECT_THAT(turnedBy(30.4, {1, 2.9, 3}), extrinsicNear(expected, 0.5, 1));
  cv::Matx44d broken = expected;
  broken(0, 0) = std::numeric_limits<double>::quiet_NaN();
  EXPECT_THAT(broken, Not(extrinsicNear(expected, 180, 1e9)));
}

TEST(Matchers, InverseUndoesATransform) {
  const cv::Matx44d transform = turnedBy(40, {5, -6, 7});
  EXPECT_LT(cv::norm(transform * inverseOf(transform) - cv::Matx44d::eye()), 1e-12);
}

// Shades of pixels whose place on the board is known, and the share of black in one on an edge.
TEST(BoardRenderer, ColoursSquaresQuietZoneAndBackground) {
  CameraModel camera;
  camera.matrix = cv::Matx33d(100, 0, 320, 0, 100, 240, 0, 0, 1);
  const BoardSpec board; // 9 x 6 corners, squares of 25, at distance 100: one pixel per unit
  const cv::Mat image =
      BoardRenderer(camera).render(board, transformOf(cv::Matx33d::eye(), {0, 0, 100}));
  const auto at = [&](int x, int y) { return int{image.at<unsigned char>(240 + y, 320 + x)}; };
  EXPECT_EQ(at(-12, -12), 25);     // the square at the origin's upper left
  EXPECT_EQ(at(12, -12), 230);     // its right neighbour
  EXPECT_EQ(at(12, 12), 25);       // the one across the origin
  EXPECT_EQ(at(212, 137), 230);    // the last square: both numbers of squares together are odd
  EXPECT_EQ(at(-30, 0), 230);      // quiet zone
  EXPECT_EQ(at(-60, 0), 128);      // background
  EXPECT_NEAR(at(0, -12), 128, 1); // half black, half white
}

TEST(BoardRenderer, EffectsAreRepeatable) {
  const BoardRenderer renderer(distortedCamera({320, 240}, 250));
  const cv::Matx44d pose = transformOf(cv::Matx33d::eye(), {-100, -60, 300});
  const cv::Mat first = renderer.render({}, pose, {0.5, 2, 7});
  EXPECT_EQ(cv::norm(first, renderer.render({}, pose, {0.5, 2, 7}), cv::NORM_INF), 0);
  EXPECT_GT(cv::norm(first, renderer.render({}, pose, {0.5, 2, 8}), cv::NORM_INF), 0);
}

TEST(SyntheticRig, BoardsLieInsideTheViewersImages) {
  RigOptions options;
  options.cameraCount = 10;
  options.groups = diamondGroups(10);
  const SyntheticRig rig = makeRig(options);
  ASSERT_EQ(rig.shots.size(), 16U * 12);
  for (const auto& [id, lists] : rig.cornerMap(0))
    for (const auto& list : lists)
      for (const cv::Point2f& corner : list)
        EXPECT_TRUE(cv::Rect2f(0, 0, 639, 479).contains(corner)) << id << corner;
}

TEST(SyntheticRig, PosesAreConsistent) {
  RigOptions options;
  options.cameraCount = 3;
  options.groups = rowGroups(3);
  const SyntheticRig rig = makeRig(options);
  for (int shot = 0; shot < 12; ++shot)
    EXPECT_THAT(rig.camFromCam(2, 0) * rig.camFromBoard(0, shot),
                extrinsicNear(rig.camFromBoard(2, shot), 1e-9, 1e-9));
  EXPECT_GT(translationLength(rig.camFromCam(1, 0)), 50);
}

TEST(SyntheticRig, NoiseHasTheStatedSize) {
  const SyntheticRig rig = makeRig({});
  const CornerMap truth = rig.cornerMap(0), noisy = rig.cornerMap(0.1);
  double sum = 0;
  int count = 0;
  for (std::size_t j = 0; j < rig.shots.size(); ++j)
    for (std::size_t i = 0; i < 54; ++i, ++count) {
      const cv::Point2f off = noisy.at("cam0")[j][i] - truth.at("cam0")[j][i];
      sum += off.dot(off);
    }
  EXPECT_NEAR(std::sqrt(sum / (2 * count)), 0.1, 0.01);
}

TEST(SyntheticRig, GroupsConnectWhatTheyPromise) {
  EXPECT_EQ(rowGroups(3), (ViewGroups{{0, 1, 2}}));
  EXPECT_EQ(chainGroups(3), (ViewGroups{{0, 1}, {1, 2}}));
  EXPECT_EQ(diamondGroups(4), (ViewGroups{{0, 1}, {1, 3}, {0, 2}, {2, 3}}));
}

TEST(SyntheticRig, ShotThatCannotBeTakenThrows) {
  RigOptions options;
  options.board.square = 200; // larger than any picture
  EXPECT_THROW(makeRig(options), std::runtime_error);
}

class SupportFiles : public TempDirTest {};

TEST_F(SupportFiles, ShotThatIsNotSeenHasAnImageWithoutBoard) {
  RigOptions options;
  options.cameraCount = 3;
  options.shotsPerGroup = 2;
  const SyntheticRig rig = makeRig(options);
  const ImagePathMap paths = rig.writeImages("images", {0.5, 2});
  EXPECT_NE(paths.at("cam0")[0], paths.at("cam0")[1]);
  EXPECT_EQ(paths.at("cam2")[0], paths.at("cam2")[1]);
  const cv::Mat blank = cv::imread(paths.at("cam2")[0], cv::IMREAD_GRAYSCALE);
  EXPECT_EQ(blank.size(), cv::Size(640, 480));
  std::vector<cv::Point2f> corners;
  EXPECT_FALSE(cv::findChessboardCorners(blank, cv::Size(9, 6), corners, cv::CALIB_CB_FAST_CHECK));
}

TEST_F(SupportFiles, LogLinesLoseTheirTimeStamp) {
  EXPECT_THAT(logLines(), IsEmpty());
  writeFile("velmorn.log", "Mon Nov 16 05:37:48 2026 text of it\nThu Jan  1 00:00:00 1970 \n");
  EXPECT_EQ(logLines(), (std::vector<std::string>{"text of it", ""}));
  writeFile("velmorn.log", "text without a time stamp, long enough\n");
  EXPECT_THROW(logLines(), std::runtime_error);
}

TEST_F(SupportFiles, MissingFileThrows) { EXPECT_THROW(readFile("none"), std::runtime_error); }

TEST(TempDirectory, IsRemovedWithItsContent) {
  std::filesystem::path path;
  {
    const TempDir directory;
    path = directory.path();
    writeFile(path / "file", "content");
    EXPECT_TRUE(std::filesystem::exists(path / "file"));
  }
  EXPECT_FALSE(std::filesystem::exists(path));
}

} // namespace
} // namespace velmorn
