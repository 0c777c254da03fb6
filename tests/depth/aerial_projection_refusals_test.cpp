// The projection's kernels: what they refuse, and what lack of memory does.
#include "depth/aerial_projection.h"

#include <gtest/gtest.h>

#include "depth/aerial_pictures.h"
#include "depth/aerial_scenes.h"
#include "support/memory_limit.h"

namespace velmorn {
namespace {

TEST(AerialProjection, MatricesThatCannotBeReadAreRefused) {
  AerialScene good = floorScene(2, 21, 20, 0.1, 3);
  good.region = {-500, -500, 500, 500};
  good.resolution = 50;
  const cv::Mat before(4, 5, CV_8UC1, cv::Scalar(77));
  const auto refused = [&](const AerialScene& s) {
    cv::Mat image = before.clone();
    const unsigned char* place = image.data;
    const int status =
        projectDepthToAerialWithColor(s.depths.data(), s.colors.data(), s.intrinsics.data(),
                                      s.extrinsics.data(), 2, &s.region, s.resolution, &image);
    EXPECT_EQ(image.data, place);
    EXPECT_TRUE(haveEqualBytes(image, before));
    return status;
  };
  const int cube[3] = {20, 21, 1};
  for (const cv::Mat& bad : {cv::Mat(), cv::Mat(20, 21, CV_8UC1), cv::Mat(3, cube, CV_16UC1)}) {
    AerialScene s = good;
    s.depths[1] = bad;
    EXPECT_EQ(refused(s), kOzkBadSize);
  }
  for (const cv::Mat& bad :
       {cv::Mat(), cv::Mat(20, 21, CV_8UC1), cv::Mat(19, 21, CV_8UC3), cv::Mat(20, 20, CV_8UC3)}) {
    AerialScene s = good;
    s.colors[1] = bad;
    EXPECT_EQ(refused(s), kOzkBadSize);
  }
  AerialScene s = good;
  s.depths[0] = s.depths[0].clone();
  s.depths[0].data = nullptr;
  EXPECT_EQ(refused(s), kOzkNullPointer);
  s = good;
  s.resolution = 1e-9F;
  EXPECT_EQ(refused(s), kOzkBadSize);
  s.region = {5, 0, 0, 5};
  s.resolution = 1;
  EXPECT_EQ(refused(s), kOzkBadSize);
}

TEST(AerialProjection, ArgumentsAreChecked) {
  AerialScene s = floorScene(2, 21, 20, 0.1, 3);
  s.region = {-500, -500, 500, 500};
  const cv::Mat* d = s.depths.data();
  const cv::Mat* c = s.colors.data();
  const tagOzKCamIntrinsic* in = s.intrinsics.data();
  const tagOzKCamExtrinsic* ex = s.extrinsics.data();
  const tagOzKRect2Df32* region = &s.region;
  cv::Mat image(4, 5, CV_8UC1, cv::Scalar(77));
  struct Call {
    const cv::Mat *depths, *colors;
    const tagOzKCamIntrinsic* intrinsics;
    const tagOzKCamExtrinsic* extrinsics;
    int count;
    const tagOzKRect2Df32* region;
    float resolution;
    cv::Mat* image;
    int status;
  };
  const float nan = std::nanf("");
  const Call calls[] = {{nullptr, c, in, ex, 0, region, 9, &image, kOzkNullPointer},
                        {d, nullptr, in, ex, 0, region, 9, &image, kOzkNullPointer},
                        {d, c, nullptr, ex, 0, region, 9, &image, kOzkNullPointer},
                        {d, c, in, nullptr, 2, region, 0, &image, kOzkNullPointer},
                        {d, c, in, ex, 0, nullptr, 9, &image, kOzkNullPointer},
                        {d, c, in, ex, 0, region, 9, nullptr, kOzkNullPointer},
                        {d, c, in, ex, 0, region, 9, &image, kOzkBadSize},
                        {d, c, in, nullptr, -3, region, 9, &image, kOzkBadSize},
                        {d, c, in, ex, 2, region, 0, &image, kOzkBadSize},
                        {d, c, in, ex, 2, region, -1, &image, kOzkBadSize},
                        {d, c, in, ex, 2, region, nan, &image, kOzkBadSize}};
  for (const Call& x : calls) {
    EXPECT_EQ(projectDepthToAerialWithColor(x.depths, x.colors, x.intrinsics, x.extrinsics, x.count,
                                            x.region, x.resolution, x.image),
              x.status);
    EXPECT_EQ(ozkCvtDepthToAerialViewImg(x.depths, x.colors, x.intrinsics, x.extrinsics, x.count,
                                         x.region, x.resolution, x.image),
              x.colors == nullptr ? kOzkBadSize : x.status);
    if (x.colors != nullptr) {
      EXPECT_EQ(projectDepthToAerial(x.depths, x.intrinsics, x.extrinsics, x.count, x.region,
                                     x.resolution, x.image),
                x.status);
    }
  }
  EXPECT_TRUE(haveEqualBytes(image, cv::Mat(4, 5, CV_8UC1, cv::Scalar(77))));
}

TEST(AerialProjection, MatrixEntryChoosesTheKernel) {
  AerialScene s = floorScene(2, 50, 40, 0.1, 3);
  s.region = {-500, -500, 500, 500};
  s.resolution = 9;
  cv::Mat image;
  const cv::Mat* noColors = nullptr;
  ASSERT_EQ(ozkCvtDepthToAerialViewImg(s.depths.data(), noColors, s.intrinsics.data(),
                                       s.extrinsics.data(), 2, &s.region, 9, &image),
            kOzkSuccess);
  EXPECT_TRUE(haveEqualBytes(image, falseColored(s)));
  ASSERT_EQ(ozkCvtDepthToAerialViewImg(s.depths.data(), s.colors.data(), s.intrinsics.data(),
                                       s.extrinsics.data(), 2, &s.region, 9, &image),
            kOzkSuccess);
  EXPECT_TRUE(haveEqualBytes(image, colored(s)));
}

#if defined(VELMORN_MEMORY_CAN_BE_LIMITED)
TEST(AerialProjection, NoMemoryForTheGridLeavesTheOutputAlone) {
  const AerialScene s = [] {
    AerialScene scene = floorScene(1, 20, 20, 0, 3);
    scene.region = {0, 0, 20000, 10000};
    return scene;
  }();
  cv::Mat image(4, 5, CV_8UC1, cv::Scalar(77));
  int status = 0;
  {
    const NoLargeMemory none;
    status = ozkCvtDepthToAerialViewImg(s.depths.data(), s.colors.data(), s.intrinsics.data(),
                                        nullptr, 1, &s.region, 1, &image);
  }
  EXPECT_EQ(status, kOzkComputationFailed);
  EXPECT_TRUE(haveEqualBytes(image, cv::Mat(4, 5, CV_8UC1, cv::Scalar(77))));
}

TEST(AerialProjection, NoMemoryForTheColoursGivesABlackImage) {
  AerialScene s = floorScene(1, 20, 20, 0, 3);
  s.region = {-500, -500, 500, 500};
  cv::Mat image(21, 21, CV_8UC3, cv::Scalar::all(9));
  int status = -5;
  {
    const NoLargeMemory none;
    status = projectDepthToAerial(s.depths.data(), s.intrinsics.data(), nullptr, 1, &s.region, 50,
                                  &image);
  }
  EXPECT_EQ(status, kOzkSuccess);
  EXPECT_EQ(cv::countNonZero(image.reshape(1)), 0);
}
#endif

} // namespace
} // namespace velmorn
