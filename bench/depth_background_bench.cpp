// The depth background: the exported function and the fill alone, beside the plain form and peers
// made of OpenCV's image operations, on the same points.
#include <algorithm>
#include <cstring>
#include <map>
#include <vector>

#include <benchmark/benchmark.h>
#include <opencv2/imgproc.hpp>

#include "depth/background_fill.h"
#include "depth/background_scenes.h"
#include "depth/plain_depth_background.h"

namespace velmorn {
namespace {

using Points = std::vector<tagOzKPoint3Df32>;

constexpr std::uint32_t kEmptyMark = 0xF2345678;

const Points& pointsFor(int n, int side) {
  static std::map<std::pair<int, int>, Points> all;
  Points& points = all[{n, side}];
  if (points.empty()) points = scatteredPoints(n, side, side, 0, 1);
  return points;
}

// Whole function: points, side of the grid.

void shipped(benchmark::State& state) {
  const int side = static_cast<int>(state.range(1));
  Points points = pointsFor(static_cast<int>(state.range(0)), side);
  tagOzKRect2Df32 region = regionOf(side, side);
  std::vector<float> background(static_cast<std::size_t>(side) * static_cast<std::size_t>(side));
  int width, height;
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        bulidDepthBackgroundByPointCloud(points.data(), static_cast<int>(points.size()), 1, &region,
                                         background.data(), &width, &height, 1, 0, side));
    benchmark::ClobberMemory();
  }
}

void plain(benchmark::State& state) {
  const int side = static_cast<int>(state.range(1));
  const Points& points = pointsFor(static_cast<int>(state.range(0)), side);
  for (auto _ : state) {
    PlainBackground b = plainBinnedCells(points, 1, regionOf(side, side), true);
    plainFillSweeps(b);
    benchmark::DoNotOptimize(b.cells.data());
  }
}

// The binning as one writes it, then dilation by a cross, copied where a cell is empty, until none
// is. Empty cells take the highest neighbour, not the first in precedence: that is less to do.
void grow(cv::Mat& cells, float empty, const cv::Mat& cross) {
  cv::Mat grown, gaps;
  for (;;) {
    cv::compare(cells, empty, gaps, cv::CMP_EQ);
    if (cv::countNonZero(gaps) == 0) return;
    cv::dilate(cells, grown, cross);
    grown.copyTo(cells, gaps);
  }
}

template <typename Take>
void dilated(benchmark::State& state, Take take) {
  const int side = static_cast<int>(state.range(1));
  const Points& points = pointsFor(static_cast<int>(state.range(0)), side);
  const tagOzKRect2Df32 region = regionOf(side, side);
  const float cellSize = static_cast<float>(state.range(1)) / static_cast<float>(side);
  constexpr float kEmpty = -1e30F;
  const cv::Mat cross = cv::getStructuringElement(cv::MORPH_CROSS, {3, 3});
  cv::Mat cells(side, side, CV_32FC1), filled(side, side, CV_8UC1);
  for (auto _ : state) {
    cells.setTo(kEmpty);
    filled.setTo(0);
    for (const tagOzKPoint3Df32& p : points) {
      if (p.x < region.x1 || p.x > region.x2 || p.y < region.y1 || p.y > region.y2) continue;
      const int row = static_cast<int>((p.y - region.y1) / cellSize);
      const int at = row * side + static_cast<int>((p.x - region.x1) / cellSize);
      take(cells.ptr<float>()[at], filled.data[at], p.z);
    }
    grow(cells, kEmpty, cross);
    benchmark::ClobberMemory();
  }
}

// With a table of filled cells, as needed for heights of any value.
void dilatedWithTable(benchmark::State& state) {
  dilated(state, [](float& cell, std::uint8_t& filled, float z) {
    if (!filled)
      cell = z;
    else
      cell = std::max(cell, z);
    filled = 1;
  });
}

// Without: right only for heights above the empty cells' value, and for the highest.
void dilatedWithoutTable(benchmark::State& state) {
  dilated(state, [](float& cell, std::uint8_t&, float z) { cell = std::max(cell, z); });
}

// Fill alone: seeds, side of the grid.

PlainBackground seedsFor(const benchmark::State& state) {
  const int side = static_cast<int>(state.range(1));
  return plainBinnedCells(pointsFor(static_cast<int>(state.range(0)), side), 1,
                          regionOf(side, side), true);
}

void fill(benchmark::State& state, VectorLevel level) {
  const PlainBackground seeds = seedsFor(state);
  std::vector<float> marked = seeds.cells;
  for (std::size_t i = 0; i < marked.size(); ++i)
    if (!seeds.filled[i]) std::memcpy(&marked[i], &kEmptyMark, sizeof kEmptyMark);
  std::vector<float> cells(marked.size());
  for (auto _ : state) {
    state.PauseTiming();
    cells = marked;
    state.ResumeTiming();
    ShortGapFiller filler(seeds.width, seeds.height, shortFillKernels(level));
    benchmark::DoNotOptimize(filler.ready() && filler.fill(cells.data(), kEmptyMark));
    benchmark::ClobberMemory();
  }
}

void fillShipped(benchmark::State& state) { fill(state, supportedVectorLevel()); }
void fillAvx2(benchmark::State& state) { fill(state, VectorLevel::kAvx2); }
void fillPlainForm(benchmark::State& state) { fill(state, VectorLevel::kNone); }

void fillSweeps(benchmark::State& state) {
  const PlainBackground seeds = seedsFor(state);
  for (auto _ : state) {
    state.PauseTiming();
    PlainBackground b = seeds;
    state.ResumeTiming();
    plainFillSweeps(b);
    benchmark::DoNotOptimize(b.cells.data());
  }
}

// Labels of the nearest seed in steps, then its value. Ties go as OpenCV likes.
void fillDistanceTransform(benchmark::State& state) {
  const PlainBackground seeds = seedsFor(state);
  cv::Mat empty(seeds.height, seeds.width, CV_8UC1), distances, labels;
  for (std::size_t i = 0; i < seeds.filled.size(); ++i) empty.data[i] = seeds.filled[i] ? 0 : 1;
  std::vector<float> cells(seeds.cells.size()), ofLabel(seeds.cells.size() + 1);
  for (auto _ : state) {
    cv::distanceTransform(empty, distances, labels, cv::DIST_L1, 3, cv::DIST_LABEL_PIXEL);
    const int* const label = labels.ptr<int>();
    for (std::size_t i = 0; i < cells.size(); ++i)
      if (seeds.filled[i]) ofLabel[static_cast<std::size_t>(label[i])] = seeds.cells[i];
    for (std::size_t i = 0; i < cells.size(); ++i)
      cells[i] = ofLabel[static_cast<std::size_t>(label[i])];
    benchmark::ClobberMemory();
  }
}

// What the machine can do, each alone: write the cells, read and write them, read the points, add
// to the points' cells one after the other.

void limitWriteCells(benchmark::State& state) {
  const std::size_t side = static_cast<std::size_t>(state.range(1));
  std::vector<float> cells(side * side);
  for (auto _ : state) {
    std::memset(cells.data(), static_cast<int>(state.iterations() & 1), 4 * cells.size());
    benchmark::ClobberMemory();
  }
}

void limitReadAndWriteCells(benchmark::State& state) {
  const std::size_t side = static_cast<std::size_t>(state.range(1));
  std::vector<std::uint32_t> cells(side * side);
  for (auto _ : state) {
    std::uint32_t all = 0;
    for (const std::uint32_t cell : cells) all |= cell;
    benchmark::DoNotOptimize(all);
    std::memset(cells.data(), static_cast<int>(state.iterations() & 1), 4 * cells.size());
    benchmark::ClobberMemory();
  }
}

void limitReadPoints(benchmark::State& state) {
  const Points& points =
      pointsFor(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
  const auto* const words = reinterpret_cast<const std::uint64_t*>(points.data());
  for (auto _ : state) {
    std::uint64_t sum[8] = {};
    for (std::size_t i = 0; i + 8 <= points.size() * 3 / 2; i += 8)
      for (std::size_t k = 0; k < 8; ++k) sum[k] += words[i + k];
    benchmark::DoNotOptimize(sum);
  }
}

void limitScatter(benchmark::State& state) {
  const int side = static_cast<int>(state.range(1));
  const Points& points = pointsFor(static_cast<int>(state.range(0)), side);
  std::vector<std::uint32_t> at;
  std::vector<float> cells(static_cast<std::size_t>(side) * static_cast<std::size_t>(side));
  for (const tagOzKPoint3Df32& p : points)
    at.push_back(static_cast<std::uint32_t>(static_cast<int>(p.y) * side + static_cast<int>(p.x)));
  for (auto _ : state) {
    for (std::size_t i = 0; i < at.size(); ++i) cells[at[i]] += 1;
    benchmark::ClobberMemory();
  }
}

void wholeSizes(benchmark::internal::Benchmark* bench) {
  bench->Args({300000, 1000})->Args({5000000, 1000})->Unit(benchmark::kMicrosecond);
}

void fillSizes(benchmark::internal::Benchmark* bench) {
  bench->Args({100, 1000})->Args({300000, 1000})->Unit(benchmark::kMicrosecond);
}

void sparseSizes(benchmark::internal::Benchmark* bench) {
  for (const int n : {1, 100, 10000, 1000000}) bench->Args({n, 4000});
  bench->Unit(benchmark::kMicrosecond);
}

BENCHMARK(shipped)->Apply(wholeSizes);
BENCHMARK(plain)->Apply(wholeSizes);
BENCHMARK(dilatedWithTable)->Apply(wholeSizes);
BENCHMARK(dilatedWithoutTable)->Apply(wholeSizes);
BENCHMARK(limitReadPoints)->Apply(wholeSizes);
BENCHMARK(limitScatter)->Apply(wholeSizes);
BENCHMARK(limitWriteCells)->Apply(wholeSizes);
BENCHMARK(limitReadAndWriteCells)->Apply(fillSizes);
BENCHMARK(fillShipped)->Apply(fillSizes);
BENCHMARK(fillAvx2)->Apply(fillSizes);
BENCHMARK(fillPlainForm)->Apply(fillSizes);
BENCHMARK(fillSweeps)->Apply(fillSizes);
BENCHMARK(fillDistanceTransform)->Apply(fillSizes);
BENCHMARK(shipped)->Apply(sparseSizes);

} // namespace
} // namespace velmorn
