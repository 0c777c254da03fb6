// The shipped plane fit against the plain one: plane, mask, return code and generator, byte by
// byte.
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>

#include <gtest/gtest.h>

#include "geometry/plain_plane_fit.h"
#include "geometry/plane_clouds.h"
#include "geometry/plane_fit.h"

namespace velmorn {
namespace {

using Points = std::vector<tagOzKPoint3Df32>;
using FitFunction = int (*)(const tagOzKPoint3Df32*, int, unsigned char*, double, double, double*,
                            void*);

constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
constexpr float kInfinity = std::numeric_limits<float>::infinity();

struct Outcome {
  int status;
  int nextRandom;
  unsigned char plane[4 * sizeof(double)];
  std::vector<unsigned char> mask;
};

Outcome run(FitFunction fit, const Points& points, double threshold,
            const std::vector<unsigned char>& maskBefore, double confidence) {
  std::vector<unsigned char> work(12 * points.size() + 16);
  double plane[4] = {7, 7, 7, 7};
  Outcome outcome{0, 0, {}, maskBefore};
  outcome.status = fit(points.data(), static_cast<int>(points.size()), outcome.mask.data(),
                       confidence, threshold, plane, work.data());
  outcome.nextRandom = std::rand();
  std::memcpy(outcome.plane, plane, sizeof plane);
  return outcome;
}

void expectSame(const Points& points, double threshold, const char* what,
                unsigned char maskBefore = 0, double confidence = 0.999) {
  const std::vector<unsigned char> mask(points.size(), maskBefore);
  const Outcome shipped = run(fitPlaneByRansacV2, points, threshold, mask, confidence);
  const Outcome plain = run(plain::fitPlaneByRansacV2, points, threshold, mask, confidence);
  EXPECT_EQ(shipped.status, plain.status) << what;
  EXPECT_EQ(shipped.nextRandom, plain.nextRandom) << what;
  EXPECT_EQ(std::memcmp(shipped.plane, plain.plane, sizeof plain.plane), 0) << what;
  EXPECT_TRUE(shipped.mask == plain.mask) << what;
}

TEST(PlaneFitBytes, RandomClouds) {
  for (unsigned seed = 0; seed < 2000; ++seed) {
    PlaneCloud cloud;
    cloud.n = static_cast<int>(3 + seed * seed % 331);
    cloud.outlierRatio = 0.2 * (seed % 5);
    cloud.raster = seed % 2 == 0;
    cloud.noise = seed % 3 == 0 ? 0.0F : 0.2F;
    cloud.step = seed % 7 == 0 ? 0.25F : 0.0F; // many distances equal to one another
    cloud.seed = seed;
    expectSame(cloud.points(), seed % 11 == 0 ? 0.25 : 0.1, "random");
  }
}

TEST(PlaneFitBytes, LargeClouds) {
  for (const bool raster : {false, true})
    for (const double outliers : {0.0, 0.5, 0.8}) {
      PlaneCloud cloud{40000};
      cloud.raster = raster;
      cloud.outlierRatio = outliers;
      expectSame(cloud.points(), 0.15, "large");
    }
}

TEST(PlaneFitBytes, DistancesAtTheThreshold) {
  for (const float height : {0.25F, 0.5F, 1.0F, 3.0F})
    for (unsigned seed = 0; seed < 20; ++seed) {
      Points points;
      for (const tagOzKPoint3Df32& p : PlaneCloud{90, 0, 0.1F, 0, false, seed}.points())
        points.push_back({std::round(p.x), std::round(p.y),
                          height * static_cast<float>(static_cast<int>(points.size()) % 3)});
      for (const double threshold :
           {static_cast<double>(height), std::nextafter(static_cast<double>(height), 0.0),
            static_cast<double>(height) * (1 - 1e-6), static_cast<double>(height) * (1 + 1e-6)})
        expectSame(points, threshold, "ties");
    }
}

TEST(PlaneFitBytes, PointsThatAreNoNumbers) {
  for (const float odd : {kNan, kInfinity, -kInfinity})
    for (unsigned seed = 0; seed < 60; ++seed) {
      Points points = PlaneCloud{40, 0.2, 0.1F, 0, false, seed}.points();
      for (std::size_t i = seed % 5; i < points.size(); i += 1 + seed % 9) {
        float* coordinates[3] = {&points[i].x, &points[i].y, &points[i].z};
        *coordinates[(i + seed) % 3] = odd;
      }
      expectSame(points, 0.2, "odd");
    }
  expectSame(Points(5, {kNan, kNan, kNan}), 0.2, "all NaN");
  expectSame(Points(5, {kInfinity, -kInfinity, kNan}), 0.2, "all infinite");
  expectSame({{1, 2, kNan}, {3, 5, kNan}, {8, 2, kNan}, {4, 4, kNan}}, 0.2, "no depth");
}

TEST(PlaneFitBytes, DegenerateClouds) {
  expectSame(Points(6, {1, 2, 3}), 0.2, "one place");
  Points diagonal, along, doubled;
  for (int i = 0; i < 9; ++i) {
    const float at = static_cast<float>(i);
    diagonal.push_back({at, at, at});
    along.push_back({4, at, 4});
    doubled.push_back(i % 2 == 0 ? tagOzKPoint3Df32{at, at * at, 1} : doubled.back());
  }
  expectSame(diagonal, 0.2, "diagonal line");
  expectSame(along, 0.2, "line along an axis");
  expectSame(doubled, 0.2, "points twice");
}

TEST(PlaneFitBytes, GiganticAndTinyCoordinates) {
  for (const float scale : {1e18F, 1e10F, 1e-3F, 1e-20F})
    for (unsigned seed = 0; seed < 10; ++seed) {
      Points points = PlaneCloud{50, 0.3, 0.1F, 0, false, seed}.points();
      for (tagOzKPoint3Df32& p : points) p = {p.x * scale, p.y * scale, p.z * scale};
      expectSame(points, 0.2 * static_cast<double>(scale), "scaled");
      expectSame(points, 0.2, "scaled cloud only");
    }
}

TEST(PlaneFitBytes, OddThresholdsConfidencesAndMasks) {
  const Points points = PlaneCloud{30, 0.2}.points();
  for (const int mask : {0, 1, 2, 255}) {
    const auto before = static_cast<unsigned char>(mask);
    for (const double threshold :
         {0.0, -0.0, -1.0, std::nan(""), 1e300, 5e-324, std::numeric_limits<double>::infinity()})
      expectSame(points, threshold, "threshold", before);
    for (const double confidence : {-1.0, 0.0, 0.5, 1.0, 7.0, std::nan("")})
      expectSame(points, 0.2, "confidence", before, confidence);
  }
}

} // namespace
} // namespace velmorn
