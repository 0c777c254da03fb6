// Simulated images against their truth.
#include "velmorn/simulate_images.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <optional>

#include <opencv2/calib3d.hpp>

#include "geometry/board_corners.h"
#include "velmorn/data_code_view.h"
#include "velmorn/pose.h"

namespace velmorn::tool {
namespace {

SimulateJob smallJob() {
  SimulateJob job;
  job.height = 1200;
  job.spacing = 250;
  job.cameras.resize(2);
  for (SimulatedCamera& camera : job.cameras) camera.lens.imageSize = {640, 480};
  job.blur = 0.7;
  job.plain.shots.shots = 3;
  job.code.shots.shots = 1;
  return job;
}

// Everything that the images of a job come from.
struct Simulated {
  explicit Simulated(const SimulateJob& asked)
      : job(asked),
        rig(simulatedRig(job)),
        boards(simulatedBoards(job, rig)),
        symbols(boards.code) {}

  SimulatedImages images(std::size_t camera) const { return {job, rig, boards, symbols, camera}; }

  cv::Point2d pixel(std::size_t camera, const cv::Matx44d& worldFromBoard, double x,
                    double y) const {
    const cv::Vec4d p =
        inversePose(rig.cameras[camera].worldFromCam) * worldFromBoard * cv::Vec4d(x, y, 0, 1);
    const auto seen = pixelOf(rig.cameras[camera].model, {p[0], p[1], p[2]});
    return seen.value_or(cv::Point2d(-1e9, -1e9));
  }

  SimulateJob job;
  SimulatedRig rig;
  SimulatedBoards boards;
  CodeBoardSymbols symbols;
};

bool isSame(const cv::Mat& a, const cv::Mat& b) {
  return a.type() == b.type() && a.size() == b.size() && cv::norm(a, b, cv::NORM_INF) == 0;
}

// Root mean square and largest distance of the found corners from the truth.
void expectCornersAtTruth(const Simulated& simulated) {
  const PlainBoard& board = simulated.boards.plain;
  for (std::size_t camera = 0; camera < 2; ++camera) {
    for (std::size_t shot = 0; shot < simulated.boards.plainShots.size(); ++shot) {
      const cv::Mat image = simulated.images(camera).plainBoard(shot);
      std::vector<cv::Point2f> corners;
      ASSERT_TRUE(detectBoardCorners(image, {9, 6}, corners)) << camera << ' ' << shot;
      refineBoardCorners(image, corners);
      ASSERT_EQ(corners.size(), 54U);
      double squares = 0;
      for (int i = 0; i < 54; ++i) {
        const cv::Point2d truth =
            simulated.pixel(camera, simulated.boards.plainShots[shot].worldFromBoard,
                            i % 9 * board.square, i / 9 * board.square);
        const cv::Point2d off = cv::Point2d(corners[static_cast<std::size_t>(i)]) - truth;
        EXPECT_LT(cv::norm(off), 0.1) << camera << ' ' << shot << ' ' << i;
        squares += off.dot(off);
      }
      EXPECT_LT(std::sqrt(squares / 54), 0.04);
    }
  }
}

TEST(SimulatedBoardImages, CornersAreAtTheirTruth) { expectCornersAtTruth(Simulated(smallJob())); }

TEST(SimulatedBoardImages, CornersAreAtTheirTruthThroughALens) {
  SimulateJob job = smallJob();
  for (SimulatedCamera& camera : job.cameras) {
    camera.lens.distortion = {-0.12, 0.03, 4e-4, -3e-4};
  }
  expectCornersAtTruth(Simulated(job));
}

TEST(SimulatedBoardImages, CodeCornersAreAtTheirTruth) {
  SimulateJob job = smallJob();
  job.noise = 1;
  const Simulated simulated(job);
  const DataCodeView view = findDataCodeBoard(simulated.images(1).codeBoard(0));
  ASSERT_EQ(view.problem, "");
  ASSERT_GE(view.pixels.size(), 40U);
  for (std::size_t i = 0; i < view.pixels.size(); ++i) {
    const cv::Point2d truth = simulated.pixel(1, simulated.boards.codeShots[0].worldFromBoard,
                                              static_cast<double>(view.onBoard[i].x),
                                              static_cast<double>(view.onBoard[i].y));
    EXPECT_LT(cv::norm(cv::Point2d(view.pixels[i]) - truth), 0.1) << truth;
  }
}

TEST(SimulatedBoardImages, AbsentCameraSeesTheGroundAlone) {
  SimulateJob job = smallJob();
  job.blur = 0;
  job.plain.shots.groups = {{0}};
  job.plain.shots.onlyGroups = true;
  const Simulated simulated(job);
  EXPECT_TRUE(isSame(simulated.images(1).plainBoard(0), simulated.images(1).plainBoard(2)));
  EXPECT_FALSE(isSame(simulated.images(0).plainBoard(0), simulated.images(0).plainBoard(2)));
  double most = 0;
  cv::minMaxLoc(simulated.images(1).plainBoard(0), nullptr, &most);
  EXPECT_LT(most, 200); // no paper
}

TEST(SimulatedBoardImages, NoiseHasItsStandardDeviationAndSeed) {
  SimulateJob job = smallJob();
  const cv::Mat quiet = Simulated(job).images(0).plainBoard(0);
  job.noise = 4;
  const Simulated simulated(job);
  const cv::Mat noisy = simulated.images(0).plainBoard(0);
  cv::Mat difference;
  cv::subtract(noisy, quiet, difference, cv::noArray(), CV_32F);
  cv::Scalar mean, deviation;
  cv::meanStdDev(difference, mean, deviation);
  // Standard errors over 307200 pixels: 0.007 and 0.005; both images are rounded.
  EXPECT_NEAR(mean[0], 0, 0.05);
  EXPECT_NEAR(deviation[0], std::sqrt(16 + 1.0 / 6), 0.05);
  EXPECT_TRUE(isSame(noisy, simulated.images(0).plainBoard(0)));
  EXPECT_FALSE(isSame(noisy - quiet, simulated.images(0).plainBoard(1) - quiet));
}

// The depth of the ground at every pixel that sees it, from the camera's pose alone.
TEST(SimulatedDepth, GroundIsWhereThePoseSays) {
  SimulateJob job = smallJob();
  job.depth.step = 0.05;
  const Simulated simulated(job);
  const cv::Mat depth = simulated.images(0).depth();
  ASSERT_EQ(depth.type(), CV_16UC1);
  const SceneCamera& camera = simulated.rig.cameras[0];
  const double* m = camera.model.intrinsic.matrix;
  const cv::Matx44d& pose = camera.worldFromCam;
  int onGround = 0;
  for (int y = 0; y < depth.rows; ++y) {
    for (int x = 0; x < depth.cols; ++x) {
      const double rise =
          pose(2, 0) * (x - m[2]) / m[0] + pose(2, 1) * (y - m[5]) / m[4] + pose(2, 2);
      const double ground = -pose(2, 3) / rise;
      const double seen = depth.at<std::uint16_t>(y, x) * job.depth.step;
      EXPECT_LT(seen, 1.8 * job.height); // the floor is 700 below
      if (std::abs(seen - ground) <= 0.5001 * job.depth.step) ++onGround;
    }
  }
  EXPECT_GT(onGround, 640 * 480 / 3);
}

TEST(SimulatedDepth, NoiseAndHolesHaveTheirSizes) {
  SimulateJob job = smallJob();
  job.depth.step = 0.05;
  const cv::Mat truth = Simulated(job).images(0).depth();
  job.depth.noise = 2;
  job.depth.holes = 0.05;
  const cv::Mat noisy = Simulated(job).images(0).depth();
  const cv::Mat measured = noisy != 0;
  const double holes = 1 - cv::countNonZero(measured) / 307200.0;
  EXPECT_NEAR(holes, 0.05, 0.002); // five standard deviations
  cv::Mat difference;
  cv::subtract(noisy, truth, difference, cv::noArray(), CV_32F);
  cv::Scalar mean, deviation;
  cv::meanStdDev(difference, mean, deviation, measured);
  EXPECT_NEAR(mean[0] * job.depth.step, 0, 0.02);
  EXPECT_NEAR(deviation[0] * job.depth.step, 2, 0.015);
}

TEST(SimulatedDepth, StepsLeaveHoles) {
  SimulateJob job = smallJob();
  const cv::Mat whole = Simulated(job).images(0).depth();
  EXPECT_EQ(cv::countNonZero(whole), 640 * 480);
  job.depth.edge = 20;
  const int holes = 640 * 480 - cv::countNonZero(Simulated(job).images(0).depth());
  EXPECT_GT(holes, 500);
  EXPECT_LT(holes, 30000);
}

TEST(SimulatedColor, HasTheDepthImagesSizeAndThings) {
  const Simulated simulated(smallJob());
  const cv::Mat color = simulated.images(0).color();
  ASSERT_EQ(color.type(), CV_8UC3);
  EXPECT_EQ(color.size(), simulated.images(0).depth().size());
  cv::Scalar mean, deviation;
  cv::meanStdDev(color, mean, deviation);
  EXPECT_GT(deviation[0], 20);
}

} // namespace
} // namespace velmorn::tool
