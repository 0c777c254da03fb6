// The reference plane of a cloud: shipped form, plain form, and PCL's RANSAC plane segmentation
// with optimised coefficients, on the same points and threshold.
//
// Arguments: points, percent outliers, 1 for a raster (neighbours in memory are neighbours in
// space) or 0 for a shuffled cloud.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <random>

#include "geometry/plain_plane_fit.h"
#include "geometry/plane_fit.h"
#include "velmorn64.h"

#if defined(VELMORN_BENCH_PCL)
#include <pcl/ModelCoefficients.h>
#include <pcl/point_cloud.h>
#include <pcl/point_types.h>
#include <pcl/segmentation/sac_segmentation.h>
#endif

namespace velmorn {
namespace {

constexpr float kThreshold = 2.0F; // mm
constexpr double kConfidence = 0.999;

using Cloud = std::vector<tagOzKPoint3Df32>;

// A tilted plane about a metre away with 0.5 mm noise. Outliers stand above it: boxes over the last
// rows of the raster, or single points anywhere.
Cloud makeCloud(const benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  const float outliers = static_cast<float>(state.range(1)) / 100.0F;
  const bool raster = state.range(2) != 0;
  const int width = static_cast<int>(std::sqrt(4.0 / 3.0 * n));
  std::mt19937 random(1);
  std::uniform_real_distribution<float> even(0, 1);
  std::normal_distribution<float> noise(0, 0.5F);
  Cloud cloud;
  for (int i = 0; i < n; ++i) {
    const float column = static_cast<float>(i % width) / static_cast<float>(width);
    const float x = 1000 * (column - 0.5F);
    const float y = 750 * (static_cast<float>(i) / static_cast<float>(n) - 0.5F);
    float z = 1000 + 0.1F * x - 0.05F * y + noise(random);
    const bool boxRow = static_cast<float>(i) >= static_cast<float>(n) * (1 - outliers);
    const bool outlier = raster ? boxRow : even(random) < outliers;
    if (outlier) z -= raster ? 50 + 20 * std::floor(5 * column) : 10 + 300 * even(random);
    cloud.push_back({x, y, z});
  }
  if (!raster) std::shuffle(cloud.begin(), cloud.end(), random);
  return cloud;
}

using Fit = int (*)(const tagOzKPoint3Df32*, int, unsigned char*, double, double, double*, void*);

void runFit(benchmark::State& state, Fit fit) {
  const Cloud cloud = makeCloud(state);
  const int n = static_cast<int>(cloud.size());
  std::vector<unsigned char> mask(cloud.size());
  Cloud work(cloud.size() + 2);
  double plane[4];
  for (auto _ : state)
    benchmark::DoNotOptimize(
        fit(cloud.data(), n, mask.data(), kConfidence, kThreshold, plane, work.data()));
}

void shippedFit(benchmark::State& state) { runFit(state, fitPlaneByRansacV2); }

void plainFit(benchmark::State& state) { runFit(state, plain::fitPlaneByRansacV2); }

void shippedReferencePlane(benchmark::State& state) {
  Cloud cloud = makeCloud(state);
  tagOzKCamExtrinsic extrinsic;
  float error = 0;
  for (auto _ : state)
    benchmark::DoNotOptimize(ozkCalRefPlaneExtrinsic(cloud.data(), static_cast<int>(cloud.size()),
                                                     kThreshold, &extrinsic, &error));
}

void cases(benchmark::internal::Benchmark* bench) {
  bench->Unit(benchmark::kMillisecond)->ArgNames({"points", "outliers", "raster"});
  for (const int n : {10000, 300000, 2000000})
    for (const int outliers : {0, 30, 60})
      for (const int raster : {0, 1}) bench->Args({n, outliers, raster});
}

BENCHMARK(shippedFit)->Apply(cases);
BENCHMARK(shippedReferencePlane)->Apply(cases);
BENCHMARK(plainFit)->Apply(cases);

#if defined(VELMORN_BENCH_PCL)
void pclSegmentation(benchmark::State& state) {
  pcl::PointCloud<pcl::PointXYZ>::Ptr cloud(new pcl::PointCloud<pcl::PointXYZ>);
  for (const tagOzKPoint3Df32& p : makeCloud(state)) cloud->push_back({p.x, p.y, p.z});
  pcl::SACSegmentation<pcl::PointXYZ> segmentation;
  segmentation.setOptimizeCoefficients(true);
  segmentation.setModelType(pcl::SACMODEL_PLANE);
  segmentation.setMethodType(pcl::SAC_RANSAC);
  segmentation.setDistanceThreshold(static_cast<double>(kThreshold));
  segmentation.setMaxIterations(30000);
  segmentation.setProbability(kConfidence);
  segmentation.setInputCloud(cloud);
  for (auto _ : state) {
    pcl::PointIndices inliers;
    pcl::ModelCoefficients coefficients;
    segmentation.segment(inliers, coefficients);
    benchmark::DoNotOptimize(inliers.indices.data());
  }
}
BENCHMARK(pclSegmentation)->Apply(cases);
#endif

} // namespace
} // namespace velmorn
