// Cameras over their scene.
#include "velmorn/simulate_rig.h"

#include <gtest/gtest.h>

#include "velmorn/pose.h"

namespace velmorn::tool {
namespace {

// f = 640 and principal points near the middle: the ground below 1000 is 2000 x 1500.
SimulateJob jobAt(const std::vector<SimulatedPlace>& places) {
  SimulateJob job;
  job.height = 1000;
  for (const SimulatedPlace& place : places) {
    SimulatedCamera camera;
    camera.lens.focal = 640;
    camera.place = place;
    job.cameras.push_back(camera);
  }
  return job;
}

TEST(SimulatedRig, SeenGroundIsThatOfAllCameras) {
  const SimulatedRig rig = simulatedRig(jobAt({{{-500, 0, 1000}}, {{500, 100, 1000}}}));
  EXPECT_NEAR(rig.seen.x, -1500, 10);
  EXPECT_NEAR(rig.seen.width, 3000, 16);
  EXPECT_NEAR(rig.seen.y, -750, 10);
  EXPECT_NEAR(rig.seen.height, 1600, 16);
}

TEST(SimulatedRig, BaseIsInTheMiddleOrAsSaid) {
  SimulateJob job = jobAt({{{-500, 0, 1000}}, {{0, 0, 1000}}, {{500, 0, 1000}}});
  SimulatedRig rig = simulatedRig(job);
  EXPECT_EQ(rig.base, 1U);
  EXPECT_EQ(rig.baseFromCam(1), cv::Matx44d::eye());
  // The base's y axis is against the world's, its x axis along it.
  EXPECT_LT(cv::norm(translationOf(rig.baseFromCam(2)) - cv::Vec3d(500, 0, 0)), 1e-9);
  job.kind = SimulatedKind::kPlatform;
  EXPECT_EQ(simulatedRig(job).base, 0U);
  job.base = 2;
  rig = simulatedRig(job);
  EXPECT_LT(cv::norm(translationOf(rig.baseFromCam(0)) - cv::Vec3d(-1000, 0, 0)), 1e-9);
}

// The things are in proportion to the cameras' height: at 600 half as large as at 1200.
TEST(SimulatedRig, SceneGoesWithTheHeight) {
  SimulateJob job = jobAt({{{0, 0, 1200}}, {{100, 0, 1200}}});
  job.height = 1200;
  const SimulatedRig full = simulatedRig(job);
  job = jobAt({{{0, 0, 600}}, {{50, 0, 600}}});
  job.height = 600;
  const SimulatedRig half = simulatedRig(job);
  ASSERT_EQ(half.scene.boxes.size(), full.scene.boxes.size());
  EXPECT_EQ(full.scene.belt.width, 1000);
  EXPECT_EQ(half.scene.belt.width, 500);
  EXPECT_EQ(half.scene.boxes.back().size * 2, full.scene.boxes.back().size);
  EXPECT_EQ(half.ground.boxes.size(), 3U); // floor and rails
}

TEST(SimulatedRig, ParcelsGoOnAlongTheBelt) {
  const SimulatedRig rig = simulatedRig(jobAt({{{-3000, 0, 1000}}, {{3000, 0, 1000}}}));
  double least = 0, most = 0;
  for (std::size_t i = 3; i < rig.scene.boxes.size(); ++i) {
    least = std::min(least, rig.scene.boxes[i].foot[0]);
    most = std::max(most, rig.scene.boxes[i].foot[0]);
  }
  EXPECT_LT(least, -3800);
  EXPECT_GT(most, 3800);
  EXPECT_GT(rig.scene.belt.length, 8000);
}

// A line of sight that goes up reaches twice the height far, which is where the belt's part ends.
TEST(SimulatedRig, SlantedCameraDoesNotSeeForEver) {
  const SimulatedRig rig = simulatedRig(jobAt({{{0, 0, 1000}}, {{0, 0, 1000}, 60, 0, 0}}));
  EXPECT_GT(rig.seen.x + rig.seen.width, 1500);
  EXPECT_LE(rig.seen.x + rig.seen.width, 2000);
}

} // namespace
} // namespace velmorn::tool
