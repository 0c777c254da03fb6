// Operations on one extrinsic: numbers by hand, and every message.
#include "velmorn/extrinsic_edits.h"

#include <gmock/gmock.h>

#include <opencv2/calib3d.hpp>

#include "support/matchers.h"
#include "tools/expect_tool_error.h"
#include "velmorn/extrinsic_file.h"

namespace velmorn::tool {
namespace {

// The plane z = 500, seen straight on.
const tagOzKCamExtrinsic kPlaneFromCam = {{-1, 0, 0, 0, 0, 1, 0, 0, 0, 0, -1, 500, 0, 0, 0, 1}};

// f = 500, principal point (320, 240): 100 pixels are 100 long in that plane.
CameraModel camera() {
  CameraModel model;
  model.intrinsic = {{500, 0, 320, 0, 500, 240, 0, 0, 1}};
  return model;
}

std::string conveyorError(const tagOzKCamExtrinsic& plane, const ConveyorLine& line) {
  return toolError([&] { conveyorAlong(plane, line, camera()); });
}

TEST(ExtrinsicEdits, GivesANewXAxis) {
  const cv::Matx44d expected(0, 1, 0, 0, 1, 0, 0, 0, 0, 0, -1, 500, 0, 0, 0, 1);
  EXPECT_THAT(transformOf(withNewXAxis(kPlaneFromCam, {0, 2, 0})),
              extrinsicNear(expected, 1e-6, 1e-6));
}

TEST(ExtrinsicEdits, SaysWhyANewXAxisIsRefused) {
  EXPECT_EQ(toolError([] {
              withNewXAxis(kPlaneFromCam, {0, 0, 0});
            }),
            "the new x axis is shorter than 0.0001");
  EXPECT_EQ(toolError([] {
              withNewXAxis(kPlaneFromCam, {0, 0, 3});
            }),
            "the new x axis is parallel to the plane's normal");
  EXPECT_EQ(toolError([] {
              withNewXAxis(tagOzKCamExtrinsic{}, {1, 0, 0});
            }),
            "the rotation cannot be inverted");
}

TEST(ExtrinsicEdits, TakesADirectionIntoThePlane) {
  const tagOzKPoint3Df32 within = intoPlane(kPlaneFromCam, {3, 4, 100});
  EXPECT_FLOAT_EQ(within.x, 0.6F);
  EXPECT_FLOAT_EQ(within.y, 0.8F);
  EXPECT_FLOAT_EQ(within.z, 0.0F);
  EXPECT_FALSE(isRigid(withNewXAxis(kPlaneFromCam, {3, 4, 100})));
  EXPECT_TRUE(isRigid(withNewXAxis(kPlaneFromCam, within)));
  for (const tagOzKPoint3Df32 none : {tagOzKPoint3Df32{0, 0, 0}, tagOzKPoint3Df32{0, 0, 5}}) {
    EXPECT_EQ(toolError([&] { intoPlane(kPlaneFromCam, none); }),
              "the new x axis is parallel to the plane's normal");
  }
}

// R00 = -1: mode 3 takes the step off x, mode 1 off y.
TEST(ExtrinsicEdits, NudgesByTheMode) {
  const double expected[4][2] = {{0, -2}, {0, 2}, {-2, 0}, {2, 0}};
  for (int mode = 1; mode <= 4; ++mode) {
    const tagOzKCamExtrinsic moved = nudged(kPlaneFromCam, 2, mode);
    EXPECT_EQ(moved.data[3], expected[mode - 1][0]) << mode;
    EXPECT_EQ(moved.data[7], expected[mode - 1][1]) << mode;
    EXPECT_EQ(moved.data[0], -1) << mode;
  }
}

TEST(ExtrinsicEdits, TurnsAndTurnsBack) {
  const tagOzKCamExtrinsic there = turned(kPlaneFromCam, 30, false);
  EXPECT_NEAR(rotationDegreesApart(transformOf(there), transformOf(kPlaneFromCam)), 30, 1e-4);
  EXPECT_EQ(there.data[11], 500);
  const tagOzKCamExtrinsic back = turned(kPlaneFromCam, 30, true);
  EXPECT_NEAR(rotationDegreesApart(transformOf(there), transformOf(back)), 60, 1e-4);
}

TEST(ExtrinsicEdits, LaysAConveyorAlongALine) {
  const ConveyorLine line{{220, 240}, {420, 240}, 1};
  // Origin (-100, 0, 500), x along camera x, z away from the camera.
  const cv::Matx44d expected(1, 0, 0, 100, 0, 1, 0, 0, 0, 0, 1, -500, 0, 0, 0, 1);
  EXPECT_THAT(transformOf(conveyorAlong(kPlaneFromCam, line, camera())),
              extrinsicNear(expected, 1e-4, 1e-3));
}

TEST(ExtrinsicEdits, TakesTheLensDistortionOfALineOut) {
  CameraModel distorted = camera();
  distorted.distortion.coeffs[0] = -1;
  // x = -0.1 and 0.1 are seen at x (1 - 0.01).
  const ConveyorLine line{{320 - 49.5F, 240}, {320 + 49.5F, 240}, 1};
  const tagOzKCamExtrinsic conveyorFromCam = conveyorAlong(kPlaneFromCam, line, distorted);
  EXPECT_NEAR(conveyorFromCam.data[3], 50, 1e-2);
}

TEST(ExtrinsicEdits, RefusesPixelsThatDoNotSeeThePlane) {
  EXPECT_EQ(conveyorError(kPlaneFromCam, {{10, 10}, {10, 10}, 0}),
            "both pixels see the same point of the plane");
  // A floor 100 below the camera: the horizon is the row of the principal point.
  const tagOzKCamExtrinsic floor = {{1, 0, 0, 0, 0, 0, 1, 0, 0, -1, 0, 100, 0, 0, 0, 1}};
  EXPECT_EQ(conveyorError(floor, {{320, 300}, {420, 300}, -1}), "no error");
  EXPECT_EQ(conveyorError(floor, {{320, 300}, {420, 240}, -1}),
            "pixel 420,240 does not see the plane");
  EXPECT_EQ(conveyorError(floor, {{320, 100}, {420, 300}, -1}),
            "pixel 320,100 does not see the plane");
}

} // namespace
} // namespace velmorn::tool
