// The projection's kernels: the bytes of whole scenes, edges and extremes.
#include "depth/aerial_projection.h"

#include <limits>

#include <gtest/gtest.h>

#include "depth/aerial_pictures.h"
#include "depth/aerial_scenes.h"

namespace velmorn {
namespace {

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

// Cells beyond those that have keys.
TEST(AerialProjection, LargeGridHasThePlainBytes) {
  AerialScene scene = floorScene(3, 320, 240, 0.05, 11);
  scene.region = {-400, -300, 500, 420};
  scene.resolution = 0.7F;
  expectPlainBytes(scene);
}

// Samples beyond those that keys can number, many as near as others in their cell.
TEST(AerialProjection, MoreSamplesThanNumbersHaveThePlainBytes) {
  AerialScene scene = floorScene(1, 4100, 2, 0.05, 12);
  scene.depths[0] = cv::repeat(scene.depths[0], 2050, 1);
  scene.colors[0] = cv::repeat(scene.colors[0], 2050, 1);
  scene.intrinsics[0] = intrinsicOf(4000, 2050, 4000, 2050);
  scene.region = {-500, -500, 500, 500};
  scene.resolution = 20;
  const AerialCameras cameras(scene.depths, scene.colors, scene.intrinsics.data(), nullptr,
                              {scene.region, scene.resolution, 51}, 51 * 51);
  EXPECT_FALSE(fitKeys(cameras));
  expectPlainBytes(scene);
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

} // namespace
} // namespace velmorn
