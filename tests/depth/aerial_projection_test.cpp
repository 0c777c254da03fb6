// The projection's kernels: which sample a cell shows, and the bytes of whole scenes.
#include "depth/aerial_projection.h"

#include <limits>

#include <gtest/gtest.h>

#include "depth/aerial_scenes.h"
#include "depth/plain_aerial_view.h"
#include "support/memory_limit.h"

namespace velmorn {
namespace {

// One camera that looks at the plane x = u d, y = v d, region 0 < x, y < 100, resolution 10.
struct HandScene : AerialScene {
  explicit HandScene(int width) {
    depths.push_back(cv::Mat::zeros(1, width, CV_16UC1));
    colors.push_back(cv::Mat::zeros(1, width, CV_8UC3));
    intrinsics.push_back(intrinsicOf(1, 0, 1, -1)); // row 0 is at y = d
    extrinsics.emplace_back();
    region = {0, 0, 100, 100};
    resolution = 10;
  }
  void sample(int u, unsigned short depth, unsigned char shade) {
    depths[0].at<std::uint16_t>(0, u) = depth;
    colors[0].at<cv::Vec3b>(0, u) = cv::Vec3b(shade, 2, 3);
  }
};

cv::Mat colored(const AerialScene& s) {
  cv::Mat image;
  EXPECT_EQ(projectDepthToAerialWithColor(s.depths.data(), s.colors.data(), s.intrinsics.data(),
                                          s.extrinsics.data(), s.cameraCount(), &s.region,
                                          s.resolution, &image),
            kOzkSuccess);
  return image;
}

cv::Mat falseColored(const AerialScene& s) {
  cv::Mat image;
  EXPECT_EQ(projectDepthToAerial(s.depths.data(), s.intrinsics.data(), s.extrinsics.data(),
                                 s.cameraCount(), &s.region, s.resolution, &image),
            kOzkSuccess);
  return image;
}

void expectPlainBytes(const AerialScene& s) {
  const cv::Mat withColor =
      plainAerialView(s.depths.data(), s.colors.data(), s.intrinsics.data(), s.extrinsics.data(),
                      s.cameraCount(), s.region, s.resolution);
  const cv::Mat withoutColor =
      plainAerialView(s.depths.data(), nullptr, s.intrinsics.data(), s.extrinsics.data(),
                      s.cameraCount(), s.region, s.resolution);
  EXPECT_TRUE(haveEqualBytes(colored(s), withColor));
  EXPECT_TRUE(haveEqualBytes(falseColored(s), withoutColor));
}

TEST(AerialProjection, SampleFallsIntoItsCell) {
  HandScene scene(3);
  scene.sample(2, 25, 7); // x = 50, y = 25
  const cv::Mat image = colored(scene);
  ASSERT_EQ(image.size(), cv::Size(11, 11));
  EXPECT_EQ(image.at<cv::Vec3b>(2, 5), cv::Vec3b(7, 2, 3));
  EXPECT_EQ(cv::countNonZero(image.reshape(1)), 3);
}

TEST(AerialProjection, BorderIsLeftOut) {
  HandScene scene(5);
  scene.sample(0, 50, 1);  // x = 0
  scene.sample(4, 25, 2);  // x = 100
  scene.sample(1, 100, 3); // y = 100
  EXPECT_EQ(cv::countNonZero(colored(scene).reshape(1)), 0);
  EXPECT_EQ(cv::countNonZero(falseColored(scene).reshape(1)), 0);
  scene.sample(1, 99, 3);
  EXPECT_EQ(colored(scene).at<cv::Vec3b>(9, 9), cv::Vec3b(3, 2, 3));
}

TEST(AerialProjection, NearestSampleWinsAndTheFirstOfEquals) {
  HandScene scene(4);
  scene.intrinsics[0] = intrinsicOf(1000, -500, 1000, -500); // all within one cell
  scene.sample(0, 12, 1);
  scene.sample(1, 11, 2);
  scene.sample(2, 11, 3);
  scene.sample(3, 13, 4);
  EXPECT_EQ(colored(scene).at<cv::Vec3b>(0, 0), cv::Vec3b(2, 2, 3));
}

TEST(AerialProjection, DepthsAreShownFromNearToFar) {
  HandScene scene(3);
  scene.sample(1, 20, 0);
  scene.sample(2, 30, 0);
  const cv::Mat image = falseColored(scene);
  EXPECT_EQ(image.at<cv::Vec3b>(2, 2), cv::Vec3b(127, 254, 128));
  EXPECT_EQ(image.at<cv::Vec3b>(3, 6), cv::Vec3b(255, 0, 0));
  EXPECT_EQ(cv::countNonZero(image.reshape(1)), 4);
}

TEST(AerialProjection, FloorScenesHaveThePlainBytes) {
  for (int k = 1; k <= 4; ++k) {
    AerialScene scene = floorScene(k, 160 + k, 120, 0.05, static_cast<unsigned>(k));
    for (const float resolution : {1.3F, 7.0F, 40.0F, 1e9F}) {
      scene.region = {-400, -300, 500, 420};
      scene.resolution = resolution;
      expectPlainBytes(scene);
    }
  }
}

double between(std::mt19937& random, double from, double to) {
  return std::uniform_real_distribution<double>(from, to)(random);
}

// Small images of odd sizes, few different depths, cameras anywhere.
AerialScene randomScene(unsigned seed) {
  std::mt19937 random(seed);
  AerialScene scene;
  const int cameras = 1 + static_cast<int>(random() % 4);
  for (int k = 0; k < cameras; ++k) {
    const int width = 1 + static_cast<int>(random() % 70),
              height = 1 + static_cast<int>(random() % 9);
    const auto steps = 1 + random() % 5;
    cv::Mat depth(height, width, CV_16UC1), color(height, width, CV_8UC3);
    for (auto i = depth.begin<std::uint16_t>(); i != depth.end<std::uint16_t>(); ++i) {
      const auto kind = random() % 20;
      *i = static_cast<std::uint16_t>(kind == 0   ? 0
                                      : kind == 1 ? 65535 - random() % 2
                                                  : 500 + 3 * (random() % steps));
    }
    for (auto i = color.begin<cv::Vec3b>(); i != color.end<cv::Vec3b>(); ++i)
      *i = cv::Vec3b(static_cast<unsigned char>(random()), static_cast<unsigned char>(random()),
                     static_cast<unsigned char>(random()));
    scene.depths.push_back(depth);
    scene.colors.push_back(color);
    scene.intrinsics.push_back(intrinsicOf(between(random, 20, 200), between(random, -10, 80),
                                           between(random, -200, 200), between(random, -5, 15)));
    scene.extrinsics.push_back(firstFromCamOf(between(random, -3, 3), between(random, -0.5, 0.5),
                                              between(random, -90, 90), between(random, -90, 90)));
  }
  for (double& element : scene.extrinsics[0].data) element = std::nan("");
  const auto place = [&] { return static_cast<float>(between(random, -300, 300)); };
  const auto extent = [&] { return static_cast<float>(between(random, 0, 700)); };
  scene.region = {place(), place(), 0, 0};
  scene.region.x2 = scene.region.x1 + extent();
  scene.region.y2 = scene.region.y1 + extent();
  scene.resolution = static_cast<float>(std::exp2(between(random, -1, 9)));
  return scene;
}

TEST(AerialProjection, RandomScenesHaveThePlainBytes) {
  for (unsigned seed = 0; seed < 600; ++seed) {
    SCOPED_TRACE(seed);
    expectPlainBytes(randomScene(seed));
  }
}

// Stretches end in the middle of a row.
TEST(AerialProjection, WideImagesHaveThePlainBytes) {
  for (const int width : {511, 512, 513, 1030}) {
    AerialScene scene = floorScene(2, width, 24, 0.1, 9);
    scene.region = {-500, -100, 500, 100};
    scene.resolution = 2.5F;
    expectPlainBytes(scene);
  }
}

// Positions on cell borders and on the region's, to the bit.
TEST(AerialProjection, ExactBordersHaveThePlainBytes) {
  for (const float resolution : {1.0F, 0.5F, 0.3F, 7.0F}) {
    AerialScene scene = floorScene(1, 90, 70, 0, 4);
    scene.intrinsics[0] = intrinsicOf(1, 40, 1, 30);
    for (auto i = scene.depths[0].begin<std::uint16_t>(); i != scene.depths[0].end<std::uint16_t>();
         ++i)
      *i = static_cast<std::uint16_t>(1 + *i % 4);
    scene.region = {-60, -50, 60, 50};
    scene.resolution = resolution;
    expectPlainBytes(scene);
  }
}

// Where x2 - x1 and x - x1 are rounded, the last column and row are still inside.
TEST(AerialProjection, RoundedExtentsStayInTheGrid) {
  for (const float far : {1e4F, 1e6F, 3.3333e6F})
    for (const float resolution : {0.7F, 1.3F, 33.3F}) {
      AerialScene scene = floorScene(1, 301, 31, 0, 4);
      scene.intrinsics[0] = intrinsicOf(900, -static_cast<double>(far) * 0.69, 900, 15.1);
      scene.region = {far * 0.98F, -100.03F, far * 0.98F + 800.07F, 100.01F};
      scene.resolution = resolution;
      expectPlainBytes(scene);
    }
}

// The next float below the region's edge, with every resolution.
TEST(AerialProjection, LastPositionBeforeTheEdgeIsInTheLastCell) {
  std::mt19937 random(21);
  for (int i = 0; i < 2000; ++i) {
    HandScene scene(1);
    const float edge = static_cast<float>(between(random, 1, 1000));
    scene.intrinsics[0] = intrinsicOf(1, -static_cast<double>(std::nextafter(edge, 0.0F)), 1,
                                      -0.5 * static_cast<double>(edge));
    scene.sample(0, 1, 9); // x is the last float below the edge
    scene.region = {static_cast<float>(between(random, -9, 0)), 0, edge, edge};
    scene.resolution = static_cast<float>(between(random, 1, 90));
    const cv::Mat image = colored(scene);
    const auto row = static_cast<int>(edge * 0.5F / scene.resolution);
    ASSERT_TRUE(image.at<cv::Vec3b>(row, image.cols - 1) == cv::Vec3b(9, 2, 3) ||
                image.at<cv::Vec3b>(row, image.cols - 2) == cv::Vec3b(9, 2, 3));
    expectPlainBytes(scene);
  }
}

TEST(AerialProjection, NumbersThatAreNoneFallIntoNoCell) {
  const double nan = std::nan(""), inf = std::numeric_limits<double>::infinity();
  for (const double odd : {nan, inf, -inf, 0.0, 1e300, 1e-300}) {
    for (const std::size_t element : {0U, 2U, 4U, 5U}) {
      AerialScene scene = floorScene(2, 50, 9, 0.1, 3);
      scene.region = {-500, -500, 500, 500};
      scene.resolution = 9;
      scene.intrinsics[element % 2].matrix[element] = odd;
      expectPlainBytes(scene);
    }
    for (std::size_t element = 0; element < 12; ++element) {
      AerialScene scene = floorScene(2, 50, 9, 0.1, 3);
      scene.region = {-500, -500, 500, 500};
      scene.resolution = 9;
      scene.extrinsics[1].data[element] = odd;
      expectPlainBytes(scene);
    }
  }
}

TEST(AerialProjection, InfiniteResolutionIsOneCell) {
  AerialScene scene = floorScene(1, 50, 9, 0.1, 3);
  scene.region = {-500, -500, 500, 500};
  scene.resolution = std::numeric_limits<float>::infinity();
  EXPECT_EQ(colored(scene).size(), cv::Size(1, 1));
  expectPlainBytes(scene);
}

TEST(AerialProjection, ReversedRegionHasNoSamples) {
  AerialScene scene = floorScene(1, 50, 9, 0, 3);
  scene.region = {2, 2, 0.5F, 1.5F}; // one column less than none, one row
  scene.resolution = 1;
  EXPECT_EQ(colored(scene).cols, 0);
  EXPECT_EQ(falseColored(scene).rows, 1);
  scene.resolution = 2;
  EXPECT_EQ(colored(scene).size(), cv::Size(1, 1));
  EXPECT_EQ(cv::countNonZero(colored(scene).reshape(1)), 0);
}

TEST(AerialProjection, SampleOf65535IsNeverShown) {
  HandScene scene(1);
  scene.intrinsics[0] = intrinsicOf(65535, -10, 65535, -10);
  scene.sample(0, 65535, 9);
  EXPECT_EQ(cv::countNonZero(colored(scene).reshape(1)), 0);
  scene.sample(0, 65534, 9);
  EXPECT_EQ(cv::countNonZero(colored(scene).reshape(1)), 3);
}

// A flat scene at one depth, seen by a camera that stands 50 to the right and 20 below and is
// turned by a right angle: its sample shows up where firstFromCam puts it.
TEST(AerialProjection, SecondCameraIsMovedIntoTheFirst) {
  HandScene scene(1);
  scene.depths.push_back(cv::Mat(1, 1, CV_16UC1, cv::Scalar(30)));
  scene.colors.push_back(cv::Mat(1, 1, CV_8UC3, cv::Scalar(4, 5, 6)));
  scene.intrinsics.push_back(intrinsicOf(1, -1, 1, 0)); // x = 30, y = 0
  scene.extrinsics.push_back({{0, -1, 0, 50, 1, 0, 0, 20, 9, 9, 9, 9, 9, 9, 9, 9}});
  const cv::Mat image = colored(scene); // at 50, 50
  EXPECT_EQ(image.at<cv::Vec3b>(5, 5), cv::Vec3b(4, 5, 6));
  EXPECT_EQ(cv::countNonZero(image.reshape(1)), 3);
}

TEST(AerialProjection, InputsWithGapsBetweenRows) {
  AerialScene scene = floorScene(2, 61, 20, 0.1, 3);
  scene.region = {-500, -500, 500, 500};
  scene.resolution = 9;
  const cv::Mat expected = colored(scene);
  for (std::size_t k = 0; k < 2; ++k) {
    cv::Mat depth(25, 90, CV_16UC1, cv::Scalar(700)), color(30, 80, CV_8UC3, cv::Scalar(1, 2, 3));
    scene.depths[k].copyTo(depth(cv::Rect(7, 2, 61, 20)));
    scene.colors[k].copyTo(color(cv::Rect(5, 3, 61, 20)));
    scene.depths[k] = depth(cv::Rect(7, 2, 61, 20));
    scene.colors[k] = color(cv::Rect(5, 3, 70, 25)); // larger than the depth image
  }
  EXPECT_TRUE(haveEqualBytes(colored(scene), expected));
}

TEST(AerialProjection, OutputKeepsItsPlaceWhenItFits) {
  AerialScene scene = floorScene(1, 61, 20, 0.1, 3);
  scene.region = {-500, -500, 500, 500};
  scene.resolution = 50; // 21 by 21
  const cv::Mat expected = colored(scene);
  cv::Mat canvas(40, 40, CV_8UC3, cv::Scalar(9, 9, 9));
  cv::Mat image = canvas(cv::Rect(3, 4, 21, 21));
  ASSERT_EQ(
      projectDepthToAerialWithColor(scene.depths.data(), scene.colors.data(),
                                    scene.intrinsics.data(), nullptr, 1, &scene.region, 50, &image),
      kOzkSuccess);
  EXPECT_TRUE(haveEqualBytes(canvas(cv::Rect(3, 4, 21, 21)), expected));
  canvas(cv::Rect(3, 4, 21, 21)).setTo(cv::Scalar(9, 9, 9));
  EXPECT_EQ(cv::norm(canvas, cv::Mat(40, 40, CV_8UC3, cv::Scalar(9, 9, 9))), 0);
}

TEST(AerialProjection, OutputMayBeAnInput) {
  AerialScene scene = floorScene(1, 21, 21, 0.1, 3);
  scene.region = {-500, -500, 500, 500};
  scene.resolution = 50;
  const cv::Mat withColor = colored(scene), withoutColor = falseColored(scene);
  const tagOzKCamIntrinsic* intrinsics = scene.intrinsics.data();

  cv::Mat color = scene.colors[0].clone();
  ASSERT_EQ(projectDepthToAerialWithColor(scene.depths.data(), &color, intrinsics, nullptr, 1,
                                          &scene.region, 50, &color),
            kOzkSuccess);
  EXPECT_TRUE(haveEqualBytes(color, withColor));
  cv::Mat depth = scene.depths[0].clone();
  ASSERT_EQ(projectDepthToAerial(&depth, intrinsics, nullptr, 1, &scene.region, 50, &depth),
            kOzkSuccess);
  EXPECT_TRUE(haveEqualBytes(depth, withoutColor));
}

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
