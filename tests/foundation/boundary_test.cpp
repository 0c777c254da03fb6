#include "foundation/boundary.h"

#include <new>
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>
#include <opencv2/core.hpp>

namespace velmorn {
namespace {

TEST(Boundary, CodesPassThrough) {
  for (const int code : {0, -1, -1107, -1111, 324}) EXPECT_EQ(guarded([&] { return code; }), code);
}

TEST(Boundary, OpencvErrorBecomesComputationFailed) {
  EXPECT_EQ(guarded([]() -> int { CV_Error(cv::Error::StsBadArg, "refused"); }), -1);
}

TEST(Boundary, LackOfMemoryBecomesComputationFailed) {
  EXPECT_EQ(guarded([]() -> int { throw std::bad_alloc(); }), -1);
}

TEST(Boundary, StandardErrorBecomesComputationFailed) {
  EXPECT_EQ(guarded([]() -> int { throw std::runtime_error("any"); }), -1);
}

TEST(Boundary, ThrownNumberBecomesComputationFailed) {
  EXPECT_EQ(guarded([]() -> int { throw 7; }), -1);
}

TEST(Boundary, BodyIsRunOnceAndInPlace) {
  int runs = 0;
  EXPECT_EQ(guarded([&] { return ++runs; }), 1);
  EXPECT_EQ(runs, 1);
}

TEST(Boundary, NothingLeavesTheGuard) {
  const auto body = []() -> int { throw std::string("text"); };
  static_assert(noexcept(guarded(body)), "the guard promises not to throw");
  EXPECT_EQ(guarded(body), kOzkComputationFailed);
}

TEST(Boundary, NothingLeavesTheGuardWithoutACode) {
  int runs = 0;
  guardedVoid([&] {
    ++runs;
    throw std::string("text");
  });
  EXPECT_EQ(runs, 1);
}

// Hosts have these numbers compiled in.
TEST(PublicConstants, StatusCodes) {
  EXPECT_EQ(kOzkSuccess, 0);
  EXPECT_EQ(kOzkComputationFailed, -1);
  EXPECT_EQ(kOzkGeometryFailed2, -2);
  EXPECT_EQ(kOzkGeometryFailed3, -3);
  EXPECT_EQ(kOzkBadImageType, -1102);
  EXPECT_EQ(kOzkBadDataType, -1103);
  EXPECT_EQ(kOzkBadSize, -1107);
  EXPECT_EQ(kOzkBadAverageInput, -1109);
  EXPECT_EQ(kOzkNullExtrinsic, -1110);
  EXPECT_EQ(kOzkNullPointer, -1111);
  EXPECT_EQ(kOzkNoDataCode, -2800);
}

TEST(PublicConstants, ImageAndSampleTypes) {
  EXPECT_EQ(kOzkImageOneChannel, 256U);
  EXPECT_EQ(kOzkImageRejected, 258U);
  EXPECT_EQ(kOzkImageThreeChannels, 512U);
  EXPECT_EQ(kOzkImageThreeChannelsSwapped, 514U);
  EXPECT_EQ(kOzkSample8U, 0U);
  EXPECT_EQ(kOzkSample16U, 5U);
}

TEST(PublicConstants, CameraLimitIsTheResultsCapacity) {
  EXPECT_EQ(kMaxStitchCameras, 10);
  EXPECT_EQ(sizeof(OzKStitchResult::camExtrinsic) / sizeof(tagOzKCamExtrinsic), 10U);
  EXPECT_EQ(sizeof(OzKStitchResult::camRTError) / sizeof(float), 10U);
}

// An array of images is walked by the whole record, its 184 reserved bytes included.
TEST(PublicConstants, ImageArrayHasTheWholeRecordsStride) {
  tagOzKImage images[3] = {};
  const auto* first = reinterpret_cast<const char*>(&images[0]);
  EXPECT_EQ(reinterpret_cast<const char*>(&images[1].type) - first, 224);
  EXPECT_EQ(reinterpret_cast<const char*>(&images[2].data) - first, 2 * 224 + 32);
}

} // namespace
} // namespace velmorn
