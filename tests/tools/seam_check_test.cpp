// Seams of cameras whose surfaces are known: offsets, noise, occlusion, no overlap.
#include "velmorn/seam_check.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <functional>
#include <random>

namespace velmorn::tool {
namespace {

// Depth along a line of sight (x, y, 1) from a camera at (cameraX, 0, 0); 0 where nothing is.
using Surface = std::function<double(double cameraX, double x, double y)>;

double wall(double, double, double) { return 1000; }

// A camera that looks along z from (x, 0, 0) in the base's frame: 320 x 240 pixels, f = 400, so
// that samples at 1000 are 2.5 apart; 50 counts per length unit.
SeamCamera cameraAt(double x, const Surface& depth, double noiseSigma = 0) {
  SeamCamera camera;
  camera.baseFromCam(0, 3) = x;
  camera.view.unit = 0.02;
  camera.view.counts.create(240, 320, CV_16UC1);
  camera.view.model.intrinsic = {{400, 0, 160, 0, 400, 120, 0, 0, 1}};
  std::mt19937 random(7 + static_cast<unsigned>(x));
  std::normal_distribution<double> noise(0, 1);
  for (int v = 0; v < 240; ++v) {
    for (int u = 0; u < 320; ++u) {
      const double z = depth(x, (u - 160) / 400.0, (v - 120) / 400.0);
      const double seen = z == 0 ? 0 : z + noiseSigma * noise(random);
      camera.view.counts.at<std::uint16_t>(v, u) =
          static_cast<std::uint16_t>(std::lround(50 * seen));
    }
  }
  return camera;
}

Seam seamOf(const SeamCamera& first, const SeamCamera& second) {
  const std::vector<Seam> seams = checkSeams({first, second});
  EXPECT_EQ(seams.size(), 1U);
  return seams.front();
}

TEST(SeamCheck, CamerasThatAgree) {
  const Seam seam = seamOf(cameraAt(0, wall), cameraAt(200, wall));
  EXPECT_EQ(seam.first, 0U);
  EXPECT_EQ(seam.second, 1U);
  EXPECT_TRUE(seam.agrees());
  EXPECT_GT(seam.inView, 10000U);
  EXPECT_LE(seam.inView, 20000U);
  EXPECT_EQ(seam.compared, seam.inView);
  EXPECT_NEAR(seam.median, 0, 1e-9);
  EXPECT_NEAR(seam.percentile90, 0, 1e-9);
}

TEST(SeamCheck, CameraHalfAMillimetreOff) {
  SeamCamera second = cameraAt(200, wall);
  second.baseFromCam(2, 3) = 0.5;
  const Seam seam = seamOf(cameraAt(0, wall), second);
  EXPECT_NEAR(seam.median, 0.5, 1e-9);
  EXPECT_NEAR(seam.percentile90, 0.5, 1e-9);
}

// A pose off along the surface moves points on it: that is no distance between surfaces.
TEST(SeamCheck, ShiftAlongTheWallShowsNothing) {
  SeamCamera second = cameraAt(200, wall);
  second.baseFromCam(0, 3) += 0.7;
  EXPECT_NEAR(seamOf(cameraAt(0, wall), second).median, 0, 1e-9);
}

// Of a normal distribution half is within 0.674 standard deviations and 90 % within 1.645. A plane
// through 25 samples adds a 25th of their variance.
TEST(SeamCheck, NoiseByItsQuantiles) {
  const Seam seam = seamOf(cameraAt(0, wall, 1), cameraAt(200, wall, 1));
  const double sigma = std::sqrt(1 + 1.0 / 25);
  EXPECT_NEAR(seam.median, 0.674 * sigma, 0.03);
  EXPECT_NEAR(seam.percentile90, 1.645 * sigma, 0.05);
  EXPECT_GT(static_cast<double>(seam.compared), 0.99 * static_cast<double>(seam.inView));
}

// A sphere of the radius around (100, 0, 1000), between the two cameras.
Surface sphere(double radius) {
  return [radius](double cameraX, double x, double y) {
    const cv::Vec3d direction(x, y, 1);
    const cv::Vec3d toMiddle(100 - cameraX, 0, 1000);
    const double a = direction.dot(direction);
    const double b = direction.dot(toMiddle);
    const double d = b * b - a * (toMiddle.dot(toMiddle) - radius * radius);
    return d < 0 ? 0.0 : (b - std::sqrt(d)) / a;
  };
}

// The 5 x 5 samples lie up to 0.05 below the surface's tangent plane.
TEST(SeamCheck, SpheresOfOneSizeAndOfTwo) {
  const SeamCamera first = cameraAt(0, sphere(250));
  const Seam same = seamOf(first, cameraAt(200, sphere(250)));
  EXPECT_TRUE(same.agrees());
  EXPECT_LT(same.median, 0.06);
  const Seam larger = seamOf(first, cameraAt(200, sphere(252)));
  EXPECT_NEAR(larger.median, 2, 0.1);
}

// A ledge 200 in front of the wall. Beside it each camera sees a strip of wall that the other one
// does not; those points are too far from the ledge to be compared with it.
TEST(SeamCheck, HiddenSurfacesAreNotCompared) {
  const Surface ledge = [](double cameraX, double x, double) {
    return std::abs(cameraX + 800 * x - 100) < 100 ? 800.0 : 1000.0;
  };
  const Seam seam = seamOf(cameraAt(0, ledge), cameraAt(200, ledge));
  EXPECT_LT(seam.compared, seam.inView);
  EXPECT_GT(static_cast<double>(seam.compared), 0.8 * static_cast<double>(seam.inView));
  EXPECT_NEAR(seam.percentile90, 0, 1e-9);
}

TEST(SeamCheck, NoOverlap) {
  const Seam seam = seamOf(cameraAt(0, wall), cameraAt(5000, wall));
  EXPECT_FALSE(seam.overlaps());
  EXPECT_FALSE(seam.agrees());
  EXPECT_EQ(seam.inView, 0U);
  const auto nothing = [](double, double, double) { return 0.0; };
  EXPECT_FALSE(seamOf(cameraAt(0, wall), cameraAt(200, nothing)).overlaps());
}

// Ten sample spacings are 25.
TEST(SeamCheck, SurfacesBeyondReach) {
  SeamCamera second = cameraAt(200, wall);
  second.baseFromCam(2, 3) = 24;
  EXPECT_NEAR(seamOf(cameraAt(0, wall), second).median, 24, 1e-9);
  second.baseFromCam(2, 3) = 26;
  const Seam seam = seamOf(cameraAt(0, wall), second);
  EXPECT_TRUE(seam.overlaps());
  EXPECT_FALSE(seam.agrees());
  EXPECT_EQ(seam.compared, 0U);
}

TEST(SeamCheck, EveryPairOnce) {
  const std::vector<Seam> seams =
      checkSeams({cameraAt(0, wall), cameraAt(200, wall), cameraAt(400, wall)});
  ASSERT_EQ(seams.size(), 3U);
  EXPECT_EQ(seams[1].first, 0U);
  EXPECT_EQ(seams[1].second, 2U);
  EXPECT_EQ(seams[2].first, 1U);
  EXPECT_EQ(seams[2].second, 2U);
  EXPECT_TRUE(checkSeams({cameraAt(0, wall)}).empty());
}

} // namespace
} // namespace velmorn::tool
