#include "geometry/rigid_transform.h"

#include <cmath>
#include <cstring>
#include <limits>

#include <gtest/gtest.h>

#include "geometry/plain_rigid_transform.h"
#include "geometry/point_clouds.h"

namespace velmorn {
namespace {

struct Fit {
  cv::Mat R, t;
  float error = -1;
  int status = 0;
};

Fit fit(const PointPairs& pairs) {
  Fit result;
  result.status =
      calRTMatFrom3dPtTo3dPt(pairs.a.data(), pairs.b.data(), static_cast<int>(pairs.a.size()),
                             result.R, result.t, &result.error);
  return result;
}

bool sameBytes(const cv::Mat& x, const cv::Mat& y) {
  return x.size() == y.size() && x.type() == y.type() &&
         std::memcmp(x.data, y.data, x.total() * x.elemSize()) == 0;
}

void expectPlainBytes(const PointPairs& pairs) {
  const Fit shipped = fit(pairs);
  ASSERT_EQ(shipped.status, 0);
  cv::Mat R, t;
  float error = 0;
  plainRigidTransform(pairs.a.data(), pairs.b.data(), static_cast<int>(pairs.a.size()), R, t,
                      &error);
  EXPECT_TRUE(sameBytes(shipped.R, R)) << pairs.a.size() << "\n" << shipped.R << "\n" << R;
  EXPECT_TRUE(sameBytes(shipped.t, t)) << pairs.a.size();
  EXPECT_EQ(std::memcmp(&shipped.error, &error, sizeof error), 0) << pairs.a.size();
}

// A tetrahedron, and the same turned by 90 degrees about z and moved by (10, 20, 30).
PointPairs tetrahedron() {
  return {{{0, 0, 0}, {1, 0, 0}, {0, 2, 0}, {0, 0, 3}},
          {{10, 20, 30}, {10, 21, 30}, {8, 20, 30}, {10, 20, 33}}};
}

TEST(RigidTransform, QuarterTurnByHand) {
  const Fit result = fit(tetrahedron());
  ASSERT_EQ(result.status, 0);
  const double bFromA[9] = {0, -1, 0, 1, 0, 0, 0, 0, 1}, shift[3] = {10, 20, 30};
  for (int k = 0; k < 9; ++k) EXPECT_NEAR(result.R.at<double>(k / 3, k % 3), bFromA[k], 1e-12);
  for (int k = 0; k < 3; ++k) EXPECT_NEAR(result.t.at<double>(k), shift[k], 1e-6);
  EXPECT_LT(result.error, 1e-6F);
}

TEST(RigidTransform, SameSetsGiveIdentity) {
  PointPairs pairs = randomPairs(20, 5);
  pairs.b = pairs.a;
  const Fit result = fit(pairs);
  EXPECT_LT(cv::norm(result.R - cv::Mat::eye(3, 3, CV_64FC1)), 1e-12);
  EXPECT_LT(cv::norm(result.t), 1e-9);
  EXPECT_LT(result.error, 1e-9F);
}

TEST(RigidTransform, NoisyPairsComeWithinTheNoise) {
  const Fit result = fit(randomPairs(5000, 11));
  const cv::Matx33d bFromA(0, -1, 0, 1, 0, 0, 0, 0, 1);
  EXPECT_LT(cv::norm(result.R - cv::Mat(bFromA)), 1e-5);
  EXPECT_LT(cv::norm(result.t - cv::Mat(cv::Vec3d(3, -20, 500))), 0.005);
  // Mean distance of a point drawn evenly from a cube of side 2 s to its centre: 0.9606 s.
  EXPECT_NEAR(result.error, 0.9606 * 0.05, 0.001);
}

TEST(RigidTransform, MirroredTargetStillGivesARotation) {
  PointPairs pairs = randomPairs(50, 6);
  for (std::size_t i = 0; i < pairs.a.size(); ++i)
    pairs.b[i] = {-pairs.a[i].x, pairs.a[i].y, pairs.a[i].z};
  const Fit result = fit(pairs);
  EXPECT_NEAR(cv::determinant(result.R), 1.0, 1e-12);
  EXPECT_GT(result.error, 50.0F);
}

TEST(RigidTransform, BytesAreThoseOfThePlainForm) {
  for (int n = 3; n <= 130; ++n) expectPlainBytes(randomPairs(n, static_cast<unsigned>(n)));
  // Around the counts at which the summation order of the covariance changes.
  for (const int n :
       {5461, 9999, 10000, 10001, 10922, 11604, 11605, 16383, 16384, 16999, 21845, 60000, 100003})
    expectPlainBytes(randomPairs(n, 3));
}

TEST(RigidTransform, BytesAreThoseOfThePlainFormForMirroredAndFlatSets) {
  for (unsigned seed = 0; seed < 200; ++seed) {
    PointPairs pairs = randomPairs(54, seed, 300.0F, 5.0F);
    for (tagOzKPoint3Df32& p : pairs.a)
      if (seed % 3 == 0) p.z = 0;
    for (tagOzKPoint3Df32& p : pairs.b)
      if (seed % 2 == 0) p.x = -p.x;
    expectPlainBytes(pairs);
  }
}

TEST(RigidTransform, DegenerateSetsAreAccepted) {
  PointPairs same{std::vector<tagOzKPoint3Df32>(5, {1, 2, 3}),
                  std::vector<tagOzKPoint3Df32>(5, {4, 5, 6})};
  Fit result = fit(same);
  EXPECT_EQ(result.status, 0);
  EXPECT_NEAR(std::abs(cv::determinant(result.R)), 1.0, 1e-12);
  EXPECT_LT(result.error, 1e-5F);

  PointPairs line;
  for (int i = 0; i < 6; ++i) {
    line.a.push_back({static_cast<float>(i), 0, 0});
    line.b.push_back({0, static_cast<float>(i), 1});
  }
  result = fit(line);
  EXPECT_EQ(result.status, 0);
  EXPECT_LT(result.error, 1e-5F);
}

TEST(RigidTransform, NotANumberNeitherCrashesNorHangs) {
  PointPairs pairs = randomPairs(60, 8);
  pairs.a[7].x = std::numeric_limits<float>::quiet_NaN();
  EXPECT_TRUE(std::isnan(fit(pairs).error));
}

TEST(RigidTransform, TooFewOrNoPointsLeaveTheOutputs) {
  const PointPairs pairs = tetrahedron();
  cv::Mat R, t;
  float error = 42;
  EXPECT_EQ(calRTMatFrom3dPtTo3dPt(pairs.a.data(), pairs.b.data(), 2, R, t, &error), -1);
  EXPECT_EQ(calRTMatFrom3dPtTo3dPt(nullptr, pairs.b.data(), 4, R, t, &error), -1);
  EXPECT_EQ(calRTMatFrom3dPtTo3dPt(pairs.a.data(), nullptr, 4, R, t, &error), -1);
  EXPECT_EQ(calRTMatFrom3dPtTo3dPt(pairs.a.data(), pairs.b.data(), -1, R, t, &error), -1);
  EXPECT_TRUE(R.empty());
  EXPECT_TRUE(t.empty());
  EXPECT_EQ(error, 42);
}

TEST(RigidTransform, TranslationIsWrittenInPlaceOnlyWhenItFits) {
  const PointPairs pairs = tetrahedron();
  cv::Mat R, fitting(3, 1, CV_64FC1), other(1, 3, CV_32FC1);
  const void* storage = fitting.data;
  float error = 0;
  calRTMatFrom3dPtTo3dPt(pairs.a.data(), pairs.b.data(), 4, R, fitting, &error);
  EXPECT_EQ(fitting.data, storage);
  calRTMatFrom3dPtTo3dPt(pairs.a.data(), pairs.b.data(), 4, R, other, &error);
  EXPECT_EQ(other.size(), cv::Size(1, 3));
  EXPECT_EQ(other.type(), CV_64FC1);
}

class RigidTransformExport : public testing::Test {
 protected:
  RigidTransformExport() { std::memset(&extrinsic, 0xA5, sizeof extrinsic); }

  int call(int n) {
    return ozkCalRTMatFrom3dPtTo3dPt(pairs.a.data(), pairs.b.data(), n, &extrinsic, &error);
  }
  bool untouched() const {
    const auto* bytes = reinterpret_cast<const unsigned char*>(&extrinsic);
    for (std::size_t i = 0; i < sizeof extrinsic; ++i)
      if (bytes[i] != 0xA5) return false;
    return error == 42;
  }

  PointPairs pairs = tetrahedron();
  tagOzKCamExtrinsic extrinsic;
  float error = 42;
};

// The rotation's lower rows are read 3 and 6 bytes, not elements, into its storage. Hosts hold
// results with exactly these bytes.
TEST_F(RigidTransformExport, LowerRotationRowsAreReadMisaligned) {
  pairs = randomPairs(30, 9);
  ASSERT_EQ(call(30), kOzkSuccess);
  const Fit solver = fit(pairs);
  const auto* storage = solver.R.data;
  EXPECT_EQ(std::memcmp(extrinsic.data, storage, 24), 0);
  EXPECT_EQ(std::memcmp(extrinsic.data + 4, storage + 3, 24), 0);
  EXPECT_EQ(std::memcmp(extrinsic.data + 8, storage + 6, 24), 0);
  EXPECT_NE(extrinsic.data[4], solver.R.at<double>(1, 0));
  EXPECT_NE(extrinsic.data[8], solver.R.at<double>(2, 0));
  for (int k = 0; k < 3; ++k) EXPECT_EQ(extrinsic.data[4 * k + 3], solver.t.at<double>(k));
  for (const int zero : {12, 13, 14}) EXPECT_EQ(extrinsic.data[zero], 0.0);
  EXPECT_EQ(extrinsic.data[15], 1.0);
  EXPECT_EQ(error, solver.error);
}

TEST_F(RigidTransformExport, ThreePairsAreEnough) { EXPECT_EQ(call(3), kOzkSuccess); }

TEST_F(RigidTransformExport, TooFewPairsLeaveTheOutputs) {
  for (const int n : {2, 0, -1}) EXPECT_EQ(call(n), kOzkBadSize);
  EXPECT_TRUE(untouched());
}

TEST_F(RigidTransformExport, NullPointersLeaveTheOutputs) {
  tagOzKPoint3Df32 *a = pairs.a.data(), *b = pairs.b.data();
  EXPECT_EQ(ozkCalRTMatFrom3dPtTo3dPt(nullptr, b, 4, &extrinsic, &error), kOzkBadSize);
  EXPECT_EQ(ozkCalRTMatFrom3dPtTo3dPt(a, nullptr, 4, &extrinsic, &error), kOzkBadSize);
  EXPECT_EQ(ozkCalRTMatFrom3dPtTo3dPt(a, b, 4, nullptr, &error), kOzkBadSize);
  EXPECT_TRUE(untouched());
}

TEST_F(RigidTransformExport, ErrorMayBeNull) {
  EXPECT_EQ(ozkCalRTMatFrom3dPtTo3dPt(pairs.a.data(), pairs.b.data(), 4, &extrinsic, nullptr),
            kOzkSuccess);
  EXPECT_NEAR(extrinsic.data[3], 10, 1e-6);
}

TEST_F(RigidTransformExport, InputsAreNotModified) {
  const PointPairs before = pairs;
  ASSERT_EQ(call(4), kOzkSuccess);
  EXPECT_EQ(std::memcmp(before.a.data(), pairs.a.data(), 48), 0);
  EXPECT_EQ(std::memcmp(before.b.data(), pairs.b.data(), 48), 0);
}

} // namespace
} // namespace velmorn
