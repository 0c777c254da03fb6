// Colours of a scene's surfaces: seams, tape, light and shadow.
#include "velmorn/scene_shading.h"

#include <gtest/gtest.h>

namespace velmorn::tool {
namespace {

const cv::Vec3d kBelt(100, 110, 120), kSeam(10, 20, 30), kBox(200, 100, 50), kTape(40, 50, 60);

// A box of 200 x 100 x 50 turned by 90 degrees, light from above.
Scene scene() {
  Scene made;
  made.belt = {1000, 600, kBelt, 200, 10, kSeam};
  made.boxes = {{{100, 0, 0}, {200, 100, 50}, 90, kBox, 20, kTape}};
  made.background = {1, 2, 3};
  return made;
}

cv::Vec3d seen(const Scene& of, const SceneRay& ray) {
  return seenColor(of, SceneGeometry(of), ray);
}

SceneRay downFrom(double x, double y) { return {{x, y, 1000}, {0, 0, -1}}; }

TEST(SceneShading, SeamsLieAtMultiplesOfTheirSpacing) {
  for (const double x : {-405.0, -395.0, 0.0, 5.0, 204.9, -200.0}) {
    EXPECT_EQ(seen(scene(), downFrom(x, 200)), kSeam) << x;
  }
  for (const double x : {-406.0, 5.1, 100.0, 194.9}) {
    EXPECT_EQ(seen(scene(), downFrom(x, 200)), kBelt) << x;
  }
  Scene plain = scene();
  plain.belt.seamSpacing = 0;
  EXPECT_EQ(seen(plain, downFrom(0, 200)), kBelt);
}

// The tape follows the box's own x axis, here the world's y axis.
TEST(SceneShading, TapeTurnsWithTheBox) {
  EXPECT_EQ(seen(scene(), downFrom(109, 80)), kTape);
  EXPECT_EQ(seen(scene(), downFrom(91, -80)), kTape);
  EXPECT_EQ(seen(scene(), downFrom(111, 80)), kBox);
  Scene untaped = scene();
  untaped.boxes[0].tapeWidth = 0;
  EXPECT_EQ(seen(untaped, downFrom(100, 0)), kBox);
}

TEST(SceneShading, NothingSeenIsTheBackground) {
  EXPECT_EQ(seen(scene(), {{0, 0, 100}, {0, 0, 1}}), cv::Vec3d(1, 2, 3));
}

// Light at 3-4-5: the top's normal has cosine 0.8 to it, so 0.25 + 0.75 * 0.8 = 0.85.
TEST(SceneShading, CosineToTheLight) {
  Scene of = scene();
  of.light = {{0, 3, 4}, 0.25};
  EXPECT_LT(cv::norm(seen(of, downFrom(120, 0)) - kBox * 0.85), 1e-9);
  // The end towards +y: cosine 0.6, 0.25 + 0.75 * 0.6 = 0.7. The one towards -y: ambient alone.
  EXPECT_LT(cv::norm(seen(of, {{120, 300, 25}, {0, -1, 0}}) - kBox * 0.7), 1e-9);
  EXPECT_LT(cv::norm(seen(of, {{120, -300, 25}, {0, 1, 0}}) - kBox * 0.25), 1e-9);
}

// The box's end at y = -100, 50 high, throws a shadow of 50 * 3 / 4 = 37.5 away from the light.
TEST(SceneShading, ShadowLiesAwayFromTheLight) {
  Scene of = scene();
  of.light = {{0, 3, 4}, 0.25};
  EXPECT_LT(cv::norm(seen(of, downFrom(100, -137)) - kBelt * 0.25), 1e-9);
  EXPECT_LT(cv::norm(seen(of, downFrom(100, -138)) - kBelt * 0.85), 1e-9);
  EXPECT_LT(cv::norm(seen(of, downFrom(100, 101)) - kBelt * 0.85), 1e-9);
}

} // namespace
} // namespace velmorn::tool
