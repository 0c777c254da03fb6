// Local planes of a depth image: distances by hand, holes, edges and bent lines of sight.
#include "velmorn/depth_surface.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <functional>
#include <limits>

namespace velmorn::tool {
namespace {

// 41 x 31 pixels, f = 100, principal point (20, 15); 100 counts per length unit. The depth is a
// function of the line of sight.
DepthView viewOf(const std::function<double(double x, double y)>& depth) {
  DepthView view;
  view.unit = 0.01;
  view.counts.create(31, 41, CV_16UC1);
  view.model.intrinsic = {{100, 0, 20, 0, 100, 15, 0, 0, 1}};
  for (int v = 0; v < 31; ++v) {
    for (int u = 0; u < 41; ++u) {
      const double z = depth((u - 20) / 100.0, (v - 15) / 100.0);
      view.counts.at<std::uint16_t>(v, u) = static_cast<std::uint16_t>(std::lround(100 * z));
    }
  }
  return view;
}

// z = 200 + x + y / 2 of points (x, y, z).
double tilted(double x, double y) { return 200 / (1 - x - y / 2); }

const cv::Point kMiddle(20, 15);

TEST(DepthSurface, DistanceFromAPlaneAcrossTheView) {
  const DepthView view = viewOf([](double, double) { return 200; });
  const auto plane = DepthSurface(view).planeAt(kMiddle);
  ASSERT_TRUE(plane);
  EXPECT_NEAR(plane->distanceTo({0, 0, 207}), 7, 1e-9);
  EXPECT_NEAR(plane->distanceTo({3, -5, 193}), 7, 1e-9);
  EXPECT_NEAR(plane->spacing, 2, 1e-12);
}

// The normal is (1, 1/2, -1), 1.5 long.
TEST(DepthSurface, DistanceFromATiltedPlane) {
  const DepthView view = viewOf(tilted);
  const DepthSurface surface(view);
  for (const cv::Point pixel : {kMiddle, cv::Point(2, 2), cv::Point(38, 28)}) {
    const auto plane = surface.planeAt(pixel);
    ASSERT_TRUE(plane) << pixel;
    EXPECT_NEAR(plane->distanceTo({0, 0, 203}), 2, 0.05);
    EXPECT_NEAR(plane->distanceTo({1, 2, 202}), 0, 0.05);
  }
}

TEST(DepthSurface, NothingAtTheBorder) {
  const DepthView view = viewOf([](double, double) { return 200; });
  const DepthSurface surface(view);
  EXPECT_TRUE(surface.planeAt({2, 2}));
  EXPECT_TRUE(surface.planeAt({38, 28}));
  for (const cv::Point pixel : {cv::Point(1, 15), {20, 1}, {39, 15}, {20, 29}, {-5, 5}, {99, 99}}) {
    EXPECT_FALSE(surface.planeAt(pixel)) << pixel;
  }
}

TEST(DepthSurface, FiveMissingSamplesOf25AreEnough) {
  DepthView view = viewOf([](double, double) { return 200; });
  view.counts(cv::Rect(18, 13, 5, 1)) = 0;
  EXPECT_TRUE(DepthSurface(view).planeAt(kMiddle));
  view.counts.at<std::uint16_t>(14, 18) = 0;
  EXPECT_FALSE(DepthSurface(view).planeAt(kMiddle));
}

TEST(DepthSurface, NothingWithoutASampleInTheMiddle) {
  DepthView view = viewOf([](double, double) { return 200; });
  view.counts.at<std::uint16_t>(kMiddle) = 0;
  EXPECT_FALSE(DepthSurface(view).planeAt(kMiddle));
}

// Samples are 2 apart; a step of 40 between two columns is no plane, two pixels away it is not
// seen.
TEST(DepthSurface, NothingAcrossAnEdge) {
  const DepthView view = viewOf([](double x, double) { return x < 0 ? 200 : 240; });
  const DepthSurface surface(view);
  EXPECT_FALSE(surface.planeAt(kMiddle));
  EXPECT_FALSE(surface.planeAt({21, 15}));
  EXPECT_TRUE(surface.planeAt({22, 15}));
  EXPECT_TRUE(surface.planeAt({17, 15}));
}

TEST(DepthSurface, ImagesSmallerThanANeighbourhood) {
  DepthView view = viewOf([](double, double) { return 200; });
  view.counts = view.counts(cv::Rect(0, 0, 3, 1)).clone();
  const DepthSurface surface(view);
  EXPECT_FALSE(surface.planeAt({1, 0}));
  EXPECT_TRUE(surface.seenOf({}).empty());
}

TEST(DepthSurface, SeesPointsInFrontOfItWithinTheImage) {
  const DepthView view = viewOf([](double, double) { return 200; });
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const auto seen = DepthSurface(view).seenOf({{0, 0, 100},
                                               {3.4, -2.6, 100},
                                               {0, 0, -100}, // behind
                                               {0, 0, 0},
                                               {20.6, 0, 100}, // right of the last pixel
                                               {0, -15.1, 100},
                                               {nan, 0, 100},
                                               {0, 0, nan}});
  ASSERT_EQ(seen.size(), 2U);
  EXPECT_EQ(seen[0].pixel, kMiddle);
  EXPECT_EQ(seen[1].pixel, cv::Point(23, 12));
  EXPECT_EQ(seen[1].pointInCam, cv::Vec3d(3.4, -2.6, 100));
}

// With k1 = -1 the line of sight x = 1 would be bent into the image's middle: x (1 - x^2) = 0.
TEST(DepthSurface, DoesNotSeeLinesOfSightThatTheModelBendsBack) {
  DepthView view = viewOf([](double, double) { return 200; });
  view.model.distortion.coeffs[0] = -1;
  const DepthSurface surface(view);
  EXPECT_TRUE(surface.seenOf({{100, 0, 100}}).empty());
  EXPECT_EQ(surface.seenOf({{0, 0, 100}}).size(), 1U);
}

} // namespace
} // namespace velmorn::tool
