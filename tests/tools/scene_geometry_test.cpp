// Where lines of sight meet a scene: hand-worked places on the belt and on boxes.
#include "velmorn/scene_geometry.h"

#include <gtest/gtest.h>

#include <cmath>

namespace velmorn::tool {
namespace {

// A belt of 1000 x 400 and one box on it: 200 long, 100 wide, 50 high.
Scene oneBox(double degrees = 0, const cv::Vec3d& foot = {0, 0, 0}) {
  Scene scene;
  scene.belt.length = 1000;
  scene.belt.width = 400;
  scene.boxes = {{foot, {200, 100, 50}, degrees, {}, 0, {}}};
  return scene;
}

SceneRay downFrom(double x, double y) { return {{x, y, 1000}, {0, 0, -1}}; }

void expectNear(const cv::Vec3d& seen, const cv::Vec3d& expected) {
  EXPECT_LT(cv::norm(seen - expected), 1e-9) << seen << " instead of " << expected;
}

TEST(SceneGeometry, TopOfBoxAndBeltFromAbove) {
  const SceneGeometry geometry(oneBox());
  const auto top = geometry.firstHit(downFrom(60, -40));
  ASSERT_TRUE(top);
  EXPECT_EQ(top->s, 950);
  EXPECT_EQ(top->box, std::optional<std::size_t>(0));
  expectNear(top->normal, {0, 0, 1});
  expectNear(top->place, {60, -40, 50});

  const auto belt = geometry.firstHit(downFrom(60, 60));
  ASSERT_TRUE(belt);
  EXPECT_EQ(belt->s, 1000);
  EXPECT_FALSE(belt->box);
  expectNear(belt->normal, {0, 0, 1});
  expectNear(belt->place, {60, 60, 0});
}

// From (-500, 0, 60) falling by 1 in 10: at x = -100 it is 20 high, on the box's end.
TEST(SceneGeometry, EndOfBoxFromTheSide) {
  const auto hit = SceneGeometry(oneBox()).firstHit({{-500, 0, 60}, {10, 0, -1}});
  ASSERT_TRUE(hit);
  EXPECT_DOUBLE_EQ(hit->s, 40);
  expectNear(hit->normal, {-1, 0, 0});
  expectNear(hit->place, {-100, 0, 20});
}

// From the other end and along y the normals point the other ways.
TEST(SceneGeometry, NormalsPointOutwards) {
  const SceneGeometry geometry(oneBox());
  expectNear(geometry.firstHit({{500, 0, 20}, {-1, 0, 0}})->normal, {1, 0, 0});
  expectNear(geometry.firstHit({{0, 500, 20}, {0, -1, 0}})->normal, {0, 1, 0});
  expectNear(geometry.firstHit({{0, -500, 20}, {0, 1, 0}})->normal, {0, -1, 0});
  expectNear(geometry.firstHit({{0, 0, -9}, {0, 0, 1}})->normal, {0, 0, -1});
}

// Turned by 90 degrees it is 200 long in y. Turned by 45 it reaches out towards (+, +) and not
// towards (+, -).
TEST(SceneGeometry, TurnsFromXTowardsY) {
  const SceneGeometry quarter(oneBox(90));
  EXPECT_EQ(quarter.firstHit(downFrom(0, 90))->s, 950);
  EXPECT_EQ(quarter.firstHit(downFrom(90, 0))->s, 1000);

  const SceneGeometry eighth(oneBox(45));
  EXPECT_EQ(eighth.firstHit(downFrom(60, 60))->s, 950);
  EXPECT_EQ(eighth.firstHit(downFrom(60, -60))->s, 1000);
  // Its end, 100 from the middle, looks along the diagonal.
  const double along = std::sqrt(0.5);
  const auto end = eighth.firstHit({{300, 300, 20}, {-1, -1, 0}});
  ASSERT_TRUE(end);
  EXPECT_DOUBLE_EQ(end->s, 300 - 100 * along);
  expectNear(end->normal, {along, along, 0});
  expectNear(end->place, {100, 0, 20});
  // Its side, 50 from the middle.
  const auto side = eighth.firstHit({{-300, 300, 20}, {1, -1, 0}});
  ASSERT_TRUE(side);
  EXPECT_DOUBLE_EQ(side->s, 300 - 50 * along);
  expectNear(side->normal, {-along, along, 0});
  expectNear(side->place, {0, 50, 20});
}

TEST(SceneGeometry, BoxStandsOnItsFoot) {
  const SceneGeometry geometry(oneBox(0, {300, -100, 70}));
  const auto hit = geometry.firstHit(downFrom(390, -140));
  ASSERT_TRUE(hit);
  EXPECT_EQ(hit->s, 1000 - 70 - 50);
  expectNear(hit->place, {90, -40, 50});
  EXPECT_EQ(geometry.firstHit(downFrom(0, 0))->s, 1000);
}

TEST(SceneGeometry, NearestSurfaceIsSeen) {
  Scene scene = oneBox();
  scene.boxes.push_back({{0, 0, 0}, {50, 50, 300}, 0, {}, 0, {}});
  scene.boxes.push_back({{0, 0, 0}, {60, 60, 200}, 0, {}, 0, {}});
  const SceneGeometry geometry(scene);
  EXPECT_EQ(geometry.firstHit(downFrom(0, 0))->box, std::optional<std::size_t>(1));
  EXPECT_EQ(geometry.firstHit(downFrom(28, 0))->box, std::optional<std::size_t>(2));
  EXPECT_EQ(geometry.firstHit(downFrom(90, 0))->box, std::optional<std::size_t>(0));
}

TEST(SceneGeometry, OfEqualBoxesTheFirst) {
  Scene scene = oneBox();
  scene.boxes.push_back(scene.boxes[0]);
  EXPECT_EQ(SceneGeometry(scene).firstHit(downFrom(0, 0))->box, std::optional<std::size_t>(0));
}

TEST(SceneGeometry, RaysThatMeetNothing) {
  const SceneGeometry geometry(oneBox());
  EXPECT_FALSE(geometry.firstHit({{0, 0, 100}, {0, 0, 1}}));      // up
  EXPECT_FALSE(geometry.firstHit({{0, 0, 100}, {1, 0, 0}}));      // over the box
  EXPECT_FALSE(geometry.firstHit(downFrom(501, 0)));              // past the belt's end
  EXPECT_FALSE(geometry.firstHit(downFrom(0, -201)));             // past its side
  EXPECT_FALSE(geometry.firstHit({{200, 0, -10}, {0, 0, 1}}));    // belt from below
  EXPECT_FALSE(geometry.firstHit({{200, 0, -10}, {0, 0, -1}}));   // belt behind
  EXPECT_FALSE(geometry.firstHit({{0, 0, 25}, {1, 0, 0}}));       // out of the box
  EXPECT_FALSE(geometry.firstHit({{-500, 50.1, 20}, {1, 0, 0}})); // beside it
  EXPECT_FALSE(SceneGeometry(Scene()).firstHit(downFrom(0, 0)));
}

// Along a face the ray counts as inside; a division by the direction would give NaN.
TEST(SceneGeometry, RayInAFaceMeetsTheBox) {
  const auto hit = SceneGeometry(oneBox()).firstHit({{-500, 50, 20}, {1, 0, 0}});
  ASSERT_TRUE(hit);
  EXPECT_EQ(hit->s, 400);
  expectNear(hit->normal, {-1, 0, 0});
}

// Rays from all sides at points a hair inside and outside of the corners of a turned box.
TEST(SceneGeometry, CornersAreMetAndNotMissed) {
  Scene scene = oneBox(30, {40, -20, 100});
  scene.belt = {};
  const SceneGeometry geometry(scene);
  const double c = std::cos(CV_PI / 6), s = std::sin(CV_PI / 6);
  for (const double x : {-100.0, 100.0}) {
    for (const double y : {-50.0, 50.0}) {
      for (const double z : {0.0, 50.0}) {
        const cv::Vec3d corner(40 + c * x - s * y, -20 + s * x + c * y, 100 + z);
        const cv::Vec3d fromMiddle = corner - cv::Vec3d(40, -20, 125);
        const cv::Vec3d origin = corner + 7 * fromMiddle;
        const cv::Vec3d across = cv::normalize(fromMiddle.cross(cv::Vec3d(1, 2, 3)));
        const cv::Vec3d inside = corner - 1e-4 * fromMiddle;
        EXPECT_TRUE(geometry.firstHit({origin, inside - origin})) << corner;
        EXPECT_TRUE(geometry.isBlocked({origin, 1e-3 * (inside - origin)})) << corner;
        // Square to the line from the middle nothing of the box is beyond the corner.
        const cv::Vec3d beside = corner + 1e-4 * fromMiddle + 500 * across;
        EXPECT_FALSE(geometry.firstHit({beside, -across})) << corner;
        EXPECT_FALSE(geometry.isBlocked({origin, origin - inside})) << corner;
      }
    }
  }
}

TEST(SceneGeometry, OnlyBoxesBlock) {
  const SceneGeometry geometry(oneBox());
  EXPECT_TRUE(geometry.isBlocked(downFrom(0, 0)));
  EXPECT_FALSE(geometry.isBlocked(downFrom(0, 100)));
}

} // namespace
} // namespace velmorn::tool
