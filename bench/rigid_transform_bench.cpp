// The rigid fit: shipped form, plain form, and Eigen's umeyama in single precision, on the same
// pairs. Eigen's does not compute the residual, ours does.
#include <benchmark/benchmark.h>
#include <Eigen/Core>
#include <Eigen/Geometry>

#include "geometry/plain_rigid_transform.h"
#include "geometry/point_clouds.h"
#include "geometry/rigid_transform.h"

namespace velmorn {
namespace {

void shipped(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  const PointPairs pairs = randomPairs(n, 1);
  cv::Mat R, t;
  float error = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        calRTMatFrom3dPtTo3dPt(pairs.a.data(), pairs.b.data(), n, R, t, &error));
    benchmark::DoNotOptimize(error);
  }
  state.SetItemsProcessed(state.iterations() * n);
}

void plain(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  const PointPairs pairs = randomPairs(n, 1);
  cv::Mat R, t;
  float error = 0;
  for (auto _ : state) {
    plainRigidTransform(pairs.a.data(), pairs.b.data(), n, R, t, &error);
    benchmark::DoNotOptimize(error);
  }
  state.SetItemsProcessed(state.iterations() * n);
}

void umeyama(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  const PointPairs pairs = randomPairs(n, 1);
  using Points = Eigen::Map<const Eigen::Matrix<float, 3, Eigen::Dynamic>>;
  const Points a(&pairs.a[0].x, 3, n), b(&pairs.b[0].x, 3, n);
  for (auto _ : state) {
    const Eigen::Matrix4f bFromA = Eigen::umeyama(a, b, false);
    benchmark::DoNotOptimize(bFromA.data());
  }
  state.SetItemsProcessed(state.iterations() * n);
}

void sizes(benchmark::internal::Benchmark* bench) {
  for (const int n : {54, 1000, 10000, 100000, 1000000}) bench->Arg(n);
}

BENCHMARK(shipped)->Apply(sizes);
BENCHMARK(plain)->Apply(sizes);
BENCHMARK(umeyama)->Apply(sizes);

} // namespace
} // namespace velmorn
