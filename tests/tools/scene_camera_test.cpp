// Lines of sight of a scene's camera, and which way its pose goes.
#include "velmorn/scene_camera.h"

#include <gtest/gtest.h>

#include "velmorn/pose.h"

namespace velmorn::tool {
namespace {

// f = 500 and 400, principal point (2, 1).
SceneCamera cameraAt(const cv::Matx44d& worldFromCam) {
  SceneCamera camera;
  camera.model.intrinsic = {{500, 0, 2, 0, 400, 1, 0, 0, 1}};
  camera.worldFromCam = worldFromCam;
  return camera;
}

void expectNear(const cv::Vec3d& seen, const cv::Vec3d& expected) {
  EXPECT_LT(cv::norm(seen - expected), 1e-12) << seen << " instead of " << expected;
}

TEST(SceneCamera, RaysByHand) {
  const auto rays = raysOf(cameraAt(lookingDown({30, 40, 1500})), {{2, 1}, {52, 1}, {2, 81}});
  ASSERT_EQ(rays.size(), 3U);
  for (const SceneRay& ray : rays) expectNear(ray.origin, {30, 40, 1500});
  expectNear(rays[0].direction, {0, 0, -1});
  expectNear(rays[1].direction, {0.1, 0, -1});  // right in the image: along the belt
  expectNear(rays[2].direction, {0, -0.2, -1}); // down in the image: against y
}

TEST(SceneCamera, PoseIsWorldFromCam) {
  // A quarter turn about z: the camera's x axis is the world's y axis.
  const cv::Matx44d worldFromCam(0, -1, 0, 7, 1, 0, 0, 8, 0, 0, 1, 9, 0, 0, 0, 1);
  const auto rays = raysOf(cameraAt(worldFromCam), {{52, 1}});
  expectNear(rays[0].origin, {7, 8, 9});
  expectNear(rays[0].direction, {0, 0.1, 1});
}

TEST(SceneCamera, TiltTurnsTheViewTowardsX) {
  const cv::Matx44d worldFromCam = lookingDown({1, 2, 3}, 30);
  expectNear(raysOf(cameraAt(worldFromCam), {{2, 1}})[0].direction, {0.5, 0, -std::sqrt(0.75)});
  EXPECT_NEAR(cv::determinant(worldFromCam.get_minor<3, 3>(0, 0)), 1, 1e-12);
  EXPECT_LT(cv::norm(inversePose(worldFromCam) * worldFromCam - cv::Matx44d::eye()), 1e-12);
  EXPECT_NEAR(rotationDegrees(inversePose(lookingDown({0, 0, 1})) * worldFromCam), 30, 1e-9);
}

// x'' = x (1 + k1 r^2) on the axis y = 0: x = 0.1, k1 = -1 gives x'' = 0.099.
TEST(SceneCamera, TakesTheLensDistortionOut) {
  SceneCamera camera = cameraAt(lookingDown({0, 0, 1}));
  camera.model.distortion.coeffs[0] = -1;
  const cv::Vec3d direction = raysOf(camera, {{2 + 500 * 0.099, 1}})[0].direction;
  EXPECT_LT(cv::norm(direction - cv::Vec3d(0.1, 0, -1)), 1e-5);
}

} // namespace
} // namespace velmorn::tool
