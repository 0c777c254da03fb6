#include <climits>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>

#include <gtest/gtest.h>

#include "geometry/extrinsics.h"
#include "geometry/plane_clouds.h"
#include "support/memory_limit.h"
#include "support/temp_dir.h"

namespace velmorn {
namespace {

using Points = std::vector<tagOzKPoint3Df32>;

class ReferencePlane : public TempDirTest {
 protected:
  int call(Points points, float threshold) {
    return ozkCalRefPlaneExtrinsic(points.data(), static_cast<int>(points.size()), threshold,
                                   &extrinsic, &error);
  }
  void expectUntouched() const {
    EXPECT_TRUE(untouched(extrinsic));
    EXPECT_EQ(error, 42);
  }

  tagOzKCamExtrinsic extrinsic = foreignExtrinsic();
  float error = 42;
};

// Scattered in the plane z = depth, around (10, 20).
Points flatPatch(float depth) {
  Points points;
  for (const tagOzKPoint3Df32& p : PlaneCloud{200}.points())
    for (const float side : {1.0F, -1.0F})
      points.push_back({10 + std::round(side * p.x), 20 + std::round(side * p.y), depth});
  return points;
}

TEST_F(ReferencePlane, FlatPatchByHand) {
  ASSERT_EQ(call(flatPatch(500), 1), kOzkSuccess);
  expectElements(extrinsic, {{-1, 0, 0, 10, 0, 1, 0, -20, 0, 0, -1, 500, 0, 0, 0, 1}}, 0);
  EXPECT_EQ(error, 0);
  EXPECT_TRUE(logLines().empty());
}

TEST_F(ReferencePlane, NormalOnTheCamerasSideIsNotTurned) {
  ASSERT_EQ(call(flatPatch(-500), 1), kOzkSuccess); // the fit gives (0, 0, 1) all the same
  EXPECT_EQ(extrinsic.data[10], -1);
  EXPECT_EQ(extrinsic.data[11], -500);
}

TEST_F(ReferencePlane, TiltedCloudGivesItsPlaneFrame) {
  PlaneCloud cloud{3000};
  cloud.outlierRatio = 0.3;
  ASSERT_EQ(call(cloud.points(), 0.2F), kOzkSuccess);
  const double length = std::sqrt(0.3 * 0.3 + 0.1 * 0.1 + 1);
  const cv::Vec3d normal(0.3 / length, -0.1 / length, -1 / length);
  const cv::Matx33d R = rotationOf(extrinsic);
  EXPECT_LT(cv::norm(R.row(2).t() - cv::Matx31d(normal)), 1e-3);
  EXPECT_NEAR(cv::determinant(cv::InputArray(R)), 1, 1e-6);
  EXPECT_LT(cv::norm(R * R.t() - cv::Matx33d::eye()), 1e-6);
  // The x axis is the camera's projected into the plane, along or against it.
  cv::Vec3d x = cv::Vec3d(1, 0, 0) - normal[0] * normal;
  x /= cv::norm(x);
  EXPECT_NEAR(std::abs(x.dot({R(0, 0), R(0, 1), R(0, 2)})), 1, 1e-5);
  // planeFromCam: a camera point of the plane comes to lie at z = 0.
  EXPECT_NEAR(apply(extrinsic, {30, -40, 500 + 9 + 4})[2], 0, 0.05);
  EXPECT_NEAR(apply(extrinsic, {0, 0, 0})[2], 500 / length, 0.05); // the camera: on the z side
}

// Y stays when N and X are turned, so all three keep right-handed.
TEST_F(ReferencePlane, TurnedFrameKeepsItsYAxis) {
  ASSERT_EQ(call(flatPatch(500), 1), kOzkSuccess);
  EXPECT_EQ(extrinsic.data[5], 1);
  EXPECT_EQ(cv::determinant(cv::InputArray(rotationOf(extrinsic))), 1);
}

TEST_F(ReferencePlane, ErrorIsTheMeanOfAllPointsOutliersToo) {
  Points points = flatPatch(500);
  points.push_back({3, 4, 700});
  points.push_back({-3, 4, 299});
  ASSERT_EQ(call(points, 1), kOzkSuccess);
  EXPECT_FLOAT_EQ(error, (200.0F + 201.0F) / 402.0F);
}

TEST_F(ReferencePlane, ValuesAreRoundedToFloat) {
  ASSERT_EQ(call(PlaneCloud{}.points(), 0.2F), kOzkSuccess);
  for (const double element : extrinsic.data)
    EXPECT_EQ(element, static_cast<double>(static_cast<float>(element)));
}

TEST_F(ReferencePlane, ErrorMayBeNull) {
  Points points = flatPatch(500);
  EXPECT_EQ(ozkCalRefPlaneExtrinsic(points.data(), 400, 1, &extrinsic, nullptr), kOzkSuccess);
  EXPECT_EQ(extrinsic.data[15], 1);
}

TEST_F(ReferencePlane, EqualInputsGiveEqualOutputs) {
  PlaneCloud cloud;
  cloud.outlierRatio = 0.4;
  ASSERT_EQ(call(cloud.points(), 0.2F), kOzkSuccess);
  const tagOzKCamExtrinsic first = extrinsic;
  const float firstError = error;
  std::srand(77);
  ASSERT_EQ(call(cloud.points(), 0.2F), kOzkSuccess);
  EXPECT_TRUE(sameBytes(first, extrinsic));
  EXPECT_EQ(firstError, error);
}

TEST_F(ReferencePlane, InputsAreNotModified) {
  Points points = PlaneCloud{}.points();
  const Points before = points;
  ASSERT_EQ(ozkCalRefPlaneExtrinsic(points.data(), 1000, 0.2F, &extrinsic, &error), kOzkSuccess);
  EXPECT_EQ(std::memcmp(points.data(), before.data(), 12 * points.size()), 0);
}

TEST_F(ReferencePlane, NullPointers) {
  Points points = flatPatch(500);
  EXPECT_EQ(ozkCalRefPlaneExtrinsic(nullptr, 400, 1, &extrinsic, &error), kOzkNullPointer);
  EXPECT_EQ(ozkCalRefPlaneExtrinsic(points.data(), 400, 1, nullptr, &error), kOzkNullPointer);
  EXPECT_EQ(ozkCalRefPlaneExtrinsic(nullptr, -1, 1, nullptr, nullptr), kOzkNullPointer);
  expectUntouched();
  EXPECT_TRUE(logLines().empty());
}

TEST_F(ReferencePlane, TooFewPointsAreTheFitsFailure) {
  Points points = flatPatch(500);
  for (const int n : {2, 1, 0, -1, INT_MIN}) {
    EXPECT_EQ(ozkCalRefPlaneExtrinsic(points.data(), n, 1, &extrinsic, &error),
              kOzkComputationFailed);
    EXPECT_EQ(logLines().back(),
              "fitPlaneByRansacV2 failed.return value is -1.ptNum is " + std::to_string(n) + ".");
  }
  EXPECT_EQ(logLines().size(), 5U);
  expectUntouched();
}

// No hypothesis wins, and the mask that the fit is given holds no inliers of its own.
TEST_F(ReferencePlane, NoInliersFail) {
  for (const float threshold : {0.0F, -1.0F, std::nanf("")})
    EXPECT_EQ(call(flatPatch(500), threshold), kOzkComputationFailed);
  EXPECT_EQ(logLines(), std::vector<std::string>(
                            3, "fitPlaneByRansacV2 failed.return value is -1.ptNum is 400."));
  expectUntouched();
}

// Three such points can be summed in float, more of them cannot: the winner's inliers give a plane
// of NaN, which the fit does not refuse and which no point is near to.
TEST_F(ReferencePlane, PlaneThatLosesItsInliersFails) {
  Points points = PlaneCloud{20}.points();
  for (tagOzKPoint3Df32& p : points) p = {0x1p126F, p.x, p.y};
  EXPECT_EQ(call(points, 1), kOzkComputationFailed);
  EXPECT_TRUE(logLines().empty());
  expectUntouched();
}

TEST_F(ReferencePlane, LineFails) {
  Points line;
  for (int i = 0; i < 9; ++i) {
    const float at = static_cast<float>(i);
    line.push_back({at, at, at});
  }
  EXPECT_EQ(call(line, 1), kOzkComputationFailed);
  expectUntouched();
}

TEST_F(ReferencePlane, PlaneAcrossTheCamerasXAxisHasNoXAxis) {
  Points points = flatPatch(300);
  for (tagOzKPoint3Df32& p : points) p = {p.z, p.y, p.x};
  EXPECT_EQ(call(points, 1), kOzkGeometryFailed2);
  expectUntouched();
  EXPECT_TRUE(logLines().empty());
}

// The basis of the plane is built from the normal's x and z; the test of the length lets NaN pass.
TEST_F(ReferencePlane, PlaneAcrossTheCamerasYAxisGivesNan) {
  Points points = flatPatch(300);
  for (tagOzKPoint3Df32& p : points) p = {p.x, p.z, p.y};
  ASSERT_EQ(call(points, 1), kOzkSuccess);
  EXPECT_TRUE(std::isnan(extrinsic.data[0]));
  EXPECT_EQ(std::abs(extrinsic.data[9]), 1);
}

TEST_F(ReferencePlane, PointsThatAreNoNumbersAreNoInliers) {
  const float inf = std::numeric_limits<float>::infinity();
  Points points = flatPatch(500);
  points.insert(points.begin() + 7, {std::nanf(""), 1, 500});
  points.insert(points.begin() + 90, {3, inf, -inf});
  ASSERT_EQ(call(points, 1), kOzkSuccess);
  expectElements(extrinsic, {{-1, 0, 0, 10, 0, 1, 0, -20, 0, 0, -1, 500, 0, 0, 0, 1}}, 0);
  EXPECT_TRUE(std::isnan(error));
  extrinsic = foreignExtrinsic();
  EXPECT_EQ(call(Points(6, {inf, std::nanf(""), inf}), 1), kOzkComputationFailed);
  EXPECT_TRUE(untouched(extrinsic));
}

#if defined(VELMORN_MEMORY_CAN_BE_LIMITED)
// 200 MiB for the mask, 2400 MiB for the work buffer.
constexpr int kManyPoints = 200 * 1024 * 1024;

TEST_F(ReferencePlane, NoMemoryForTheMask) {
  Points points = flatPatch(500);
  {
    const MemoryLimit limit(100 << 20);
    EXPECT_EQ(ozkCalRefPlaneExtrinsic(points.data(), kManyPoints, 1, &extrinsic, &error),
              kOzkComputationFailed);
  }
  EXPECT_EQ(logLines(), std::vector<std::string>{
                            "malloc error.ptNum is 209715200.needed memory is 200.000000 MB"});
  expectUntouched();
}

// The mask is lost on this path.
TEST_F(ReferencePlane, NoMemoryForTheWorkBuffer) {
  Points points = flatPatch(500);
  {
    const MemoryLimit limit(500 << 20);
    EXPECT_EQ(ozkCalRefPlaneExtrinsic(points.data(), kManyPoints, 1, &extrinsic, &error),
              kOzkComputationFailed);
  }
  EXPECT_EQ(logLines(), std::vector<std::string>{
                            "malloc error.ptNum is 209715200.needed memory is 2400.000000 MB"});
  expectUntouched();
}
#endif

} // namespace
} // namespace velmorn
