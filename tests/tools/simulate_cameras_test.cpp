// Lenses and places of simulated cameras.
#include "velmorn/simulate_cameras.h"

#include <gtest/gtest.h>

#include <cmath>

#include "support/matchers.h"
#include "tools/expect_tool_error.h"
#include "velmorn/pose.h"

namespace velmorn::tool {
namespace {

SimulateJob jobFor(std::size_t cameras, SimulatedKind kind = SimulatedKind::kConveyor) {
  SimulateJob job;
  job.kind = kind;
  job.height = 1200;
  job.cameras.resize(cameras);
  return job;
}

cv::Vec3d sightOf(const cv::Matx44d& worldFromCam) {
  return {worldFromCam(0, 2), worldFromCam(1, 2), worldFromCam(2, 2)};
}

cv::Vec3d rightOf(const cv::Matx44d& worldFromCam) {
  return {worldFromCam(0, 0), worldFromCam(1, 0), worldFromCam(2, 0)};
}

void expectNear(const cv::Vec3d& found, const cv::Vec3d& expected) {
  EXPECT_LT(cv::norm(found - expected), 1e-12) << found << " instead of " << expected;
}

TEST(SimulatedPlaces, TiltsGoTowardsTheWorldsAxes) {
  const double c = std::sqrt(0.75);
  expectNear(sightOf(worldFromCamAt({{1, 2, 3}, 0, 0, 0})), {0, 0, -1});
  expectNear(sightOf(worldFromCamAt({{1, 2, 3}, 30, 0, 0})), {0.5, 0, -c});
  expectNear(sightOf(worldFromCamAt({{1, 2, 3}, 0, 30, 0})), {0, 0.5, -c});
  expectNear(translationOf(worldFromCamAt({{1, 2, 3}, 30, 20, 10})), {1, 2, 3});
}

// A quarter turn about the line of sight, which is down: image x goes against world y.
TEST(SimulatedPlaces, TurnIsAboutTheLineOfSight) {
  expectNear(rightOf(worldFromCamAt({{0, 0, 1}, 0, 0, 0})), {1, 0, 0});
  expectNear(rightOf(worldFromCamAt({{0, 0, 1}, 0, 0, 90})), {0, -1, 0});
  expectNear(sightOf(worldFromCamAt({{0, 0, 1}, 0, 0, 90})), {0, 0, -1});
}

TEST(SimulatedCameras, StandInARow) {
  const std::vector<SceneCamera> cameras = simulatedCameras(jobFor(3));
  ASSERT_EQ(cameras.size(), 3U);
  for (int i = 0; i < 3; ++i) {
    const SceneCamera& camera = cameras[static_cast<std::size_t>(i)];
    const SimulatedPlace place{{500.0 * (i - 1), 0, 1200}, 0, 0, 0};
    // 12 along each axis and 2 degrees about each at most.
    EXPECT_THAT(camera.worldFromCam, extrinsicNear(worldFromCamAt(place), 4, 21));
    EXPECT_NEAR(camera.model.intrinsic.matrix[0], 640 / std::tan(32.5 * CV_PI / 180), 10.1);
    EXPECT_NEAR(camera.model.intrinsic.matrix[2], 639.5, 5);
    EXPECT_NEAR(camera.model.intrinsic.matrix[5], 479.5, 5);
  }
  EXPECT_GT(rotationDegreesApart(cameras[0].worldFromCam, cameras[1].worldFromCam), 0.01);
}

TEST(SimulatedCameras, StandInARingAndLookAtItsMiddle) {
  SimulateJob job = jobFor(6, SimulatedKind::kPlatform);
  job.spacing = 400; // of a hexagon: its radius
  for (const SceneCamera& camera : simulatedCameras(job)) {
    const cv::Vec3d position = translationOf(camera.worldFromCam);
    EXPECT_NEAR(std::hypot(position[0], position[1]), 400, 18);
    const double cosine = sightOf(camera.worldFromCam).dot(cv::normalize(-position));
    EXPECT_GT(cosine, std::cos(3.5 * CV_PI / 180));
    EXPECT_GT(rightOf(camera.worldFromCam)[0], 0.8); // images stay upright
  }
}

TEST(SimulatedCameras, WhatTheJobSaysIsExact) {
  SimulateJob job = jobFor(2);
  job.cameras[1].place = SimulatedPlace{{10, 20, 900}, 1, 2, 3};
  job.cameras[1].lens.focal = 700;
  job.cameras[1].lens.distortion = {-0.1, 0.02, 0.001, 0.002, 0.003};
  const SceneCamera camera = simulatedCameras(job)[1];
  EXPECT_EQ(camera.worldFromCam, worldFromCamAt(*job.cameras[1].place));
  EXPECT_EQ(camera.model.intrinsic.matrix[0], 700);
  EXPECT_EQ(camera.model.intrinsic.matrix[4], 700);
  EXPECT_EQ(camera.model.distortion.coeffs[4], 0.003);
  EXPECT_EQ(camera.model.distortion.coeffs[5], 0);
}

TEST(SimulatedCameras, SeedDecides) {
  SimulateJob job = jobFor(2);
  const cv::Matx44d first = simulatedCameras(job)[0].worldFromCam;
  EXPECT_EQ(simulatedCameras(job)[0].worldFromCam, first);
  job.seed = 2;
  EXPECT_NE(simulatedCameras(job)[0].worldFromCam, first);
}

// Seen from the middle outwards, x (1 - r^2) turns back at r = 0.58 and never reaches the border.
TEST(SimulatedCameras, RefuseALensThatFoldsTheImage) {
  SimulateJob job = jobFor(2);
  job.cameras[1].lens.distortion = {-1, 0, 0, 0};
  EXPECT_EQ(toolError([&] { simulatedCameras(job); }),
            "camera \"cam2\": \"distortion\" is too strong, the image's border cannot be traced "
            "back");
  job.cameras[1].lens.distortion = {-0.12, 0.03, 0.0004, -0.0003};
  EXPECT_EQ(toolError([&] { simulatedCameras(job); }), "no error");
}

} // namespace
} // namespace velmorn::tool
