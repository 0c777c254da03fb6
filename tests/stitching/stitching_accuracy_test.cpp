// Whole runs against the truth: rendered rigs, and photographs of a real stereo pair.
#include <algorithm>
#include <ostream>
#include <set>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <opencv2/calib3d.hpp>
#include <opencv2/imgcodecs.hpp>

#include "stitching/board_files.h"
#include "stitching/stitch_run.h"
#include "support/matchers.h"
#include "support/real_images.h"
#include "support/temp_dir.h"

namespace velmorn {
namespace {

using testing::ElementsAre;

struct Layout {
  const char* name;
  int cameraCount;
  ViewGroups groups;
  std::set<int> direct; // the cameras linked to the base directly
  int base;
};

// What GoogleTest shows for a layout.
void PrintTo(const Layout& layout, std::ostream* stream) { *stream << layout.name; }

std::set<int> allBut(int cameraCount, int base) {
  std::set<int> cameras;
  for (int i = 0; i < cameraCount; ++i)
    if (i != base) cameras.insert(i);
  return cameras;
}

std::set<int> between(int cameraCount) {
  std::set<int> cameras;
  for (int i = 1; i + 1 < cameraCount; ++i) cameras.insert(i);
  return cameras;
}

class RenderedRig : public testing::WithParamInterface<Layout>, public TempDirTest {};

TEST_P(RenderedRig, DirectlyLinkedCamerasAreWithinTheFigures) {
  const Layout& layout = GetParam();
  RigOptions options;
  options.cameraCount = layout.cameraCount;
  options.groups = layout.groups;
  // Squares that stay wider than the window of the refinement, steeply seen ones too.
  options.imageSize = {800, 600};
  options.focal = 640;
  options.board.width = 7;
  options.board.height = 5;
  options.board.square = 34;
  const SyntheticRig rig = makeRig(options);
  StitchInputs inputs = inputsWithImages(rig, dir() / "images", {0.7, 2});
  inputs.minImages = 10;
  const EntryOutcome outcome = runEntry(inputs);
  ASSERT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.result.baseCamIdx, layout.base);
  for (const int camera : layout.direct) {
    const cv::Matx44d truth = rig.camFromCam(camera, layout.base);
    EXPECT_THAT(transformOf(outcome.result.camExtrinsic[camera]),
                extrinsicNear(truth, 0.02, 1e-3 * translationLength(truth)))
        << "camera " << camera;
    EXPECT_LT(outcome.result.camRTError[camera], 0.2) << "camera " << camera;
  }
}

INSTANTIATE_TEST_SUITE_P(
    Layouts, RenderedRig,
    testing::Values(Layout{"RowOfTwo", 2, rowGroups(2), {1}, 0},
                    Layout{"RowOfThree", 3, rowGroups(3), {1, 2}, 0},
                    Layout{"RowOfFive", 5, rowGroups(5), allBut(5, 0), 0},
                    Layout{"RowOfTen", 10, rowGroups(10), allBut(10, 0), 0},
                    Layout{"ChainOfThree", 3, chainGroups(3), {0, 2}, 1},
                    Layout{"ChainOfFive", 5, chainGroups(5), {1, 3}, 2},
                    Layout{"ChainOfTen", 10, chainGroups(10), {3, 5}, 4},
                    Layout{"DiamondOfFour", 4, diamondGroups(4), {1, 2}, 0},
                    Layout{"DiamondOfFive", 5, diamondGroups(5), between(5), 0},
                    Layout{"DiamondOfTen", 10, diamondGroups(10), between(10), 0}),
    [](const auto& info) { return std::string(info.param.name); });

struct Calibration {
  cv::Mat matrix, distortion; // 3x3, 1x5
};

using CornerLists = std::vector<std::vector<cv::Point2f>>;

// A list per image, empty where the board is not found.
CornerLists cornersOf(const std::vector<std::string>& paths) {
  CornerLists corners;
  for (const std::string& path : paths)
    corners.push_back(searchWithOpencv(cv::imread(path, cv::IMREAD_GRAYSCALE), cv::Size(9, 6)));
  return corners;
}

CornerLists found(const CornerLists& corners) {
  CornerLists kept;
  for (const auto& list : corners)
    if (!list.empty()) kept.push_back(list);
  return kept;
}

std::vector<std::vector<cv::Point3f>> boards(std::size_t count) {
  return {count, boardCorners(BoardSpec{})};
}

Calibration calibrate(const CornerLists& corners, cv::Size imageSize) {
  Calibration camera;
  std::vector<cv::Mat> rotations, translations;
  cv::calibrateCamera(boards(corners.size()), corners, imageSize, camera.matrix, camera.distortion,
                      rotations, translations);
  return camera;
}

// rightFromLeft from the positions that both saw, the cameras' own parameters kept.
cv::Matx44d calibratePair(CornerLists left, CornerLists right, const Calibration& leftCamera,
                          const Calibration& rightCamera, cv::Size imageSize) {
  for (std::size_t j = 0; j < left.size(); ++j)
    if (left[j].empty() || right[j].empty()) {
      left[j].clear();
      right[j].clear();
    }
  left = found(left);
  right = found(right);
  cv::Mat leftK = leftCamera.matrix, leftD = leftCamera.distortion, R, T, E, F;
  cv::Mat rightK = rightCamera.matrix, rightD = rightCamera.distortion;
  cv::stereoCalibrate(boards(left.size()), left, right, leftK, leftD, rightK, rightD, imageSize, R,
                      T, E, F, cv::CALIB_FIX_INTRINSIC);
  return transformOf(R, T);
}

void addCamera(StitchInputs& inputs, const std::string& id, const std::vector<std::string>& paths,
               const Calibration& camera) {
  inputs.camIDs.push_back(id);
  inputs.paths[id] = paths;
  std::copy(camera.matrix.begin<double>(), camera.matrix.end<double>(),
            inputs.intrinsics[id].matrix);
  inputs.distortions[id] = {};
  std::copy(camera.distortion.begin<double>(), camera.distortion.end<double>(),
            inputs.distortions[id].coeffs);
}

class RealStereoPair : public TempDirTest {};

TEST_F(RealStereoPair, AgreesWithOpencvsStereoCalibration) {
  const StereoSet set = stereoSet();
  const CornerLists left = cornersOf(set.left), right = cornersOf(set.right);
  ASSERT_GE(found(left).size(), 12U);
  ASSERT_GE(found(right).size(), 12U);
  const Calibration leftCamera = calibrate(found(left), set.imageSize);
  const Calibration rightCamera = calibrate(found(right), set.imageSize);
  const cv::Matx44d rightFromLeft =
      calibratePair(left, right, leftCamera, rightCamera, set.imageSize);

  StitchInputs inputs;
  addCamera(inputs, "left", set.left, leftCamera);
  addCamera(inputs, "right", set.right, rightCamera);
  inputs.patternSize = set.patternSize;
  inputs.squareSize = set.squareSize;
  inputs.minImages = 10;
  inputs.baseCamIdx = 0;
  const EntryOutcome outcome = runEntry(inputs);
  ASSERT_EQ(outcome.status, 0);
  EXPECT_THAT(transformOf(outcome.result.camExtrinsic[1]), extrinsicNear(rightFromLeft, 0.05, 1));
  EXPECT_NEAR(translationLength(transformOf(outcome.result.camExtrinsic[1])), 83.6, 0.3);
  EXPECT_EQ(withoutCornerSearch(outcome.console), "baseCamIdx=0");
  EXPECT_THAT(logLines(),
              ElementsAre("camreaIDs (left,right)",
                          "inputCameraIdx=0.minSubCameraDepth=1,minDepthBaseCameraIdx=0,"
                          "minDepthCamID=left",
                          "calCameraRTByChessImgs success"));
}

} // namespace
} // namespace velmorn
