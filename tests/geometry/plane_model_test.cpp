#include "geometry/plane_model.h"

#include <cmath>
#include <cstring>

#include <gtest/gtest.h>

#include "geometry/extrinsics.h"
#include "geometry/spoken.h"

namespace velmorn {
namespace {

constexpr tagOzKPoint3Df64 kUntouched{42, 43, 44};

void expectPoint(const tagOzKPoint3Df64& actual, double x, double y, double z) {
  EXPECT_NEAR(actual.x, x, 1e-9);
  EXPECT_NEAR(actual.y, y, 1e-9);
  EXPECT_NEAR(actual.z, z, 1e-9);
}

TEST(PlaneModel, StraightViewByHand) {
  tagOzKCamExtrinsic planeFromCam = straightPlaneFromCam(500);
  planeFromCam.data[3] = 10; // the frame's origin is at x = 10
  tagOzKPoint3Df64 point, normal;
  getPlaneModelFromExtrinsic(&planeFromCam, &point, &normal);
  expectPoint(point, 10, 0, 500);
  expectPoint(normal, 0, 0, -1);
}

TEST(PlaneModel, PointIsMappedToTheOrigin) {
  tagOzKCamExtrinsic planeFromCam = tiltedPlaneFromCam(500, {0.2, -0.1, 0.4});
  tagOzKPoint3Df64 point, normal;
  getPlaneModelFromExtrinsic(&planeFromCam, &point, &normal);
  EXPECT_LT(cv::norm(apply(planeFromCam, {point.x, point.y, point.z})), 1e-9);
  EXPECT_EQ(normal.y, planeFromCam.data[9]);
}

// A rotation that cannot be inverted is not reported.
TEST(PlaneModel, SingularRotationGivesTheNormalAllTheSame) {
  tagOzKCamExtrinsic planeFromCam{};
  planeFromCam.data[9] = 3;
  tagOzKPoint3Df64 point = kUntouched, normal = kUntouched;
  const Spoken spoken =
      spokenBy([&] { getPlaneModelFromExtrinsic(&planeFromCam, &point, &normal); });
  expectPoint(normal, 0, 3, 0);
  expectPoint(point, 0, 0, 0);
  EXPECT_EQ(spoken.stream + spoken.printf, "");
}

TEST(PlaneModel, NullPointersWriteNothing) {
  tagOzKCamExtrinsic planeFromCam = identityExtrinsic();
  tagOzKPoint3Df64 point = kUntouched, normal = kUntouched;
  getPlaneModelFromExtrinsic(nullptr, &point, &normal);
  getPlaneModelFromExtrinsic(&planeFromCam, nullptr, &normal);
  getPlaneModelFromExtrinsic(&planeFromCam, &point, nullptr);
  expectPoint(point, 42, 43, 44);
  expectPoint(normal, 42, 43, 44);
}

TEST(TargetOriginInSource, SaysWhetherTheRotationCanBeInverted) {
  Vector3d origin{};
  EXPECT_TRUE(targetOriginInSource(straightPlaneFromCam(500), origin));
  EXPECT_EQ(origin.z, 500);
  EXPECT_FALSE(targetOriginInSource(tagOzKCamExtrinsic{}, origin));
}

struct Intersection {
  tagOzKPoint3Df64 out = kUntouched;
  int status = 0;
  Spoken spoken{};

  Intersection(tagOzKPoint3Df64 linePoint, tagOzKPoint3Df64 lineDir, tagOzKPoint3Df64 planePoint,
               tagOzKPoint3Df64 planeNormal) {
    spoken = spokenBy([&] {
      status = calLineAndPlaneIntesection(linePoint, lineDir, planePoint, planeNormal, &out);
    });
  }
};

TEST(LineAndPlane, ByHandForDirectionsOfAnyLength) {
  const Intersection result({1, 2, 3}, {2, 0, 4}, {9, 9, 11}, {0, 0, -7});
  EXPECT_EQ(result.status, kOzkSuccess);
  expectPoint(result.out, 5, 2, 11);
  EXPECT_EQ(result.spoken.stream + result.spoken.printf, "");
}

TEST(LineAndPlane, BehindTheLinesPointCountsAsWell) {
  const Intersection result({0, 0, 5}, {0, 0, 1}, {0, 0, 2}, {0, 0, 1});
  EXPECT_EQ(result.status, kOzkSuccess);
  expectPoint(result.out, 0, 0, 2);
}

TEST(LineAndPlane, ParallelLineSaysSoByPrintf) {
  const Intersection result({1, 2, 3}, {1, 0.5, 0}, {0, 0, 0}, {0, 0, 2});
  EXPECT_EQ(result.status, kOzkComputationFailed);
  EXPECT_EQ(result.spoken.printf,
            "no intesection.line direction is (1.000000,0.500000,0.000000)."
            "plane normal is (0.000000,0.000000,2.000000)\n");
  EXPECT_EQ(result.spoken.stream, "");
  expectPoint(result.out, 42, 43, 44);
}

TEST(LineAndPlane, SlopeLimitIsOfTheVectorsAsTheyAre) {
  EXPECT_EQ(Intersection({}, {0, 0, 9e-7}, {0, 0, 1}, {0, 0, 1}).status, -1);
  EXPECT_EQ(Intersection({}, {0, 0, 1e-6}, {0, 0, 1}, {0, 0, 1}).status, 0);
  EXPECT_EQ(Intersection({}, {0, 0, 9e-7}, {0, 0, 1}, {0, 0, -10}).status, 0);
}

TEST(LineAndPlane, NullOutputIsNoticedAfterTheGeometry) {
  EXPECT_EQ(calLineAndPlaneIntesection({}, {0, 0, 1}, {0, 0, 1}, {0, 0, 1}, nullptr), -1111);
  int status = 0;
  spokenBy([&] {
    status = calLineAndPlaneIntesection({}, {1, 0, 0}, {0, 0, 1}, {0, 0, 1}, nullptr);
  });
  EXPECT_EQ(status, kOzkComputationFailed);
}

TEST(LineAndPlane, NotANumberIsPassedOn) {
  const Intersection result({}, {0, 0, std::nan("")}, {0, 0, 1}, {0, 0, 1});
  EXPECT_EQ(result.status, kOzkSuccess);
  EXPECT_TRUE(std::isnan(result.out.z));
}

} // namespace
} // namespace velmorn
