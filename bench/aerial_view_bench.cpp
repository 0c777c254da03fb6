// The aerial view: the record form as exported, the plain form, a peer written with OpenCV's
// functions, and the bare work that no form can do without, on the same scenes.
//
// Arguments: cameras, width of their images (640 x 480 or 1280 x 1024), columns of the square grid.
#include <algorithm>
#include <cstdint>
#include <cstring>
#include <vector>

#include <benchmark/benchmark.h>
#include <opencv2/core.hpp>

#include "depth/aerial_scenes.h"
#include "depth/plain_aerial_view.h"

namespace velmorn {
namespace {

AerialScene sceneOf(const benchmark::State& state) {
  const int width = static_cast<int>(state.range(1));
  const int height = width == 1280 ? 1024 : width * 3 / 4;
  AerialScene scene = floorScene(static_cast<int>(state.range(0)), width, height, 0.03, 1);
  const float side = state.range(0) == 1 ? 1000.0F : 1200.0F;
  scene.region = {-500, -500, side - 500, side - 500};
  scene.resolution = side / (static_cast<float>(state.range(2)) - 0.5F);
  return scene;
}

void shipped(benchmark::State& state, bool isColored) {
  const AerialScene s = sceneOf(state);
  std::vector<tagOzKImage> depths, colors;
  for (const cv::Mat& depth : s.depths) depths.push_back(recordOf(depth));
  for (const cv::Mat& color : s.colors) colors.push_back(recordOf(color));
  tagOzKImage image{};
  createAerialViewImg(&s.region, s.resolution, &image);
  for (auto _ : state) {
    const int status = ozkCvtDepthToAerialViewImg(
        depths.data(), isColored ? colors.data() : nullptr, s.intrinsics.data(),
        s.extrinsics.data(), s.cameraCount(), &s.region, s.resolution, &image);
    if (status != kOzkSuccess) state.SkipWithError("failed");
    benchmark::ClobberMemory();
  }
  releaseAerialViewImg(&image);
}

void plain(benchmark::State& state, bool isColored) {
  const AerialScene s = sceneOf(state);
  for (auto _ : state) {
    const cv::Mat image =
        plainAerialView(s.depths.data(), isColored ? s.colors.data() : nullptr, s.intrinsics.data(),
                        s.extrinsics.data(), s.cameraCount(), s.region, s.resolution);
    benchmark::DoNotOptimize(image.data);
  }
}

// A camera's samples as columns and rows of the grid, by OpenCV's vectorised functions over strips
// that stay in the second cache. Cells differ from ours where the rounding does.
class CellStrips {
 public:
  static constexpr int kRows = 32;

  CellStrips(const AerialScene& s, std::size_t k) : s_(s), k_(k) {
    const double* m = s.intrinsics[k].matrix;
    const int width = s.depths[k].cols, height = s.depths[k].rows;
    cv::Mat xs(1, width, CV_32F), ys(height, 1, CV_32F);
    for (int u = 0; u < width; ++u) xs.at<float>(u) = static_cast<float>((u - m[2]) / m[0]);
    for (int v = 0; v < height; ++v) ys.at<float>(v) = static_cast<float>((v - m[5]) / m[4]);
    cv::repeat(xs, std::min(kRows, height), 1, xFactors_);
    cv::repeat(ys, 1, width, yFactors_);
  }

  void compute(const cv::Range& rows) {
    s_.depths[k_].rowRange(rows).convertTo(d_, CV_32F);
    cv::multiply(xFactors_.rowRange(0, rows.size()), d_, x_);
    cv::multiply(yFactors_.rowRange(rows), d_, y_);
    if (k_ > 0) {
      const double* e = s_.extrinsics[k_].data;
      combine(e, movedX_);
      combine(e + 4, movedY_);
      cv::swap(x_, movedX_);
      cv::swap(y_, movedY_);
    }
    const tagOzKRect2Df32& region = s_.region;
    cv::inRange(x_, region.x1, region.x2, inside);
    cv::inRange(y_, region.y1, region.y2, insideY_);
    cv::bitwise_and(inside, insideY_, inside);
    const double scale = 1.0 / static_cast<double>(s_.resolution);
    x_.convertTo(columns, CV_32S, scale, -static_cast<double>(region.x1) * scale - 0.5);
    y_.convertTo(this->rows, CV_32S, scale, -static_cast<double>(region.y1) * scale - 0.5);
  }

  cv::Mat columns, rows, inside;

 private:
  void combine(const double* row, cv::Mat& sum) {
    cv::addWeighted(x_, row[0], y_, row[1], row[3], sum);
    cv::scaleAdd(d_, row[2], sum, sum);
  }

  const AerialScene& s_;
  std::size_t k_;
  cv::Mat xFactors_, yFactors_, d_, x_, y_, movedX_, movedY_, insideY_;
};

void scatterRow(const AerialScene& s, std::size_t k, int v, const CellStrips& strip, int stripRow,
                bool isColored, cv::Mat& nearest, cv::Mat& image) {
  const auto* depth = s.depths[k].ptr<std::uint16_t>(v);
  const auto* color = s.colors[k].ptr<cv::Vec3b>(v);
  const auto* column = strip.columns.ptr<int>(stripRow);
  const auto* row = strip.rows.ptr<int>(stripRow);
  const auto* inside = strip.inside.ptr(stripRow);
  for (int u = 0; u < s.depths[k].cols; ++u) {
    if (inside[u] == 0 || depth[u] == 0) continue;
    auto& cell = nearest.at<std::uint16_t>(row[u], column[u]);
    if (depth[u] >= cell) continue;
    cell = depth[u];
    if (isColored) image.at<cv::Vec3b>(row[u], column[u]) = color[u];
  }
}

// One colour per depth, empty cells and all, so that the last loop has no branch.
void colorByDepth(const cv::Mat& nearest, cv::Mat& image) {
  std::vector<unsigned> counts(65536);
  const auto* depth = nearest.ptr<std::uint16_t>();
  for (std::size_t i = 0; i < nearest.total(); ++i)
    if (depth[i] != 65535) ++counts[depth[i]];
  unsigned total = 0, sum = 0;
  for (const unsigned count : counts) total += count;
  std::vector<cv::Vec3b> table(65536);
  for (std::size_t i = 0; i < 65535 && total > 0; ++i) {
    sum += counts[i];
    const int e = static_cast<int>(sum * 255U / total);
    table[i] = cv::Vec3b(static_cast<unsigned char>(e),
                         static_cast<unsigned char>(2 * std::min(e, 255 - e)),
                         static_cast<unsigned char>(255 - e));
  }
  auto* cell = image.ptr<cv::Vec3b>();
  for (std::size_t i = 0; i < nearest.total(); ++i) cell[i] = table[depth[i]];
}

void peer(benchmark::State& state, bool isColored) {
  const AerialScene s = sceneOf(state);
  const int side = static_cast<int>(state.range(2));
  cv::Mat nearest(side, side, CV_16UC1), image(side, side, CV_8UC3);
  for (auto _ : state) {
    nearest.setTo(65535);
    if (isColored) image.setTo(cv::Scalar::all(0));
    for (std::size_t k = 0; k < s.depths.size(); ++k) {
      CellStrips strips(s, k);
      const int height = s.depths[k].rows;
      for (int v = 0; v < height; v += CellStrips::kRows) {
        const cv::Range rows(v, std::min(height, v + CellStrips::kRows));
        strips.compute(rows);
        for (int i = 0; i < rows.size(); ++i)
          scatterRow(s, k, v + i, strips, i, isColored, nearest, image);
      }
    }
    if (!isColored) colorByDepth(nearest, image);
    benchmark::ClobberMemory();
  }
}

// The samples that fall into the grid and their cells, worked out beforehand.
struct PreparedSamples {
  std::vector<std::uint16_t> depths;
  std::vector<std::int32_t> cells;
  std::vector<unsigned char> pixels; // three bytes each
};

PreparedSamples prepare(const AerialScene& s, int gridWidth) {
  PreparedSamples prepared;
  for (std::size_t k = 0; k < s.depths.size(); ++k) {
    CellStrips strip(s, k);
    const cv::Mat &depth = s.depths[k], &color = s.colors[k];
    for (int v = 0; v < depth.rows; ++v) {
      strip.compute({v, v + 1});
      for (int u = 0; u < depth.cols; ++u) {
        if (strip.inside.at<unsigned char>(u) == 0 || depth.at<std::uint16_t>(v, u) == 0) continue;
        prepared.depths.push_back(depth.at<std::uint16_t>(v, u));
        prepared.cells.push_back(strip.rows.at<int>(u) * gridWidth + strip.columns.at<int>(u));
        const unsigned char* pixel = color.ptr(v, u);
        prepared.pixels.insert(prepared.pixels.end(), pixel, pixel + 3);
      }
    }
  }
  return prepared;
}

// What a form cannot do without, whatever its arithmetic: all cells set once, every sample read
// once, one minimum for each that falls into the grid (at a cell known beforehand) and, with
// colour, three bytes moved for it; without colour, the depths read twice and the image written.
void bare(benchmark::State& state, bool isColored) {
  const AerialScene s = sceneOf(state);
  const int side = static_cast<int>(state.range(2));
  const PreparedSamples prepared = prepare(s, side);
  std::vector<std::uint16_t> nearest(static_cast<std::size_t>(side) *
                                     static_cast<std::size_t>(side));
  std::vector<unsigned char> image(3 * nearest.size());
  const auto read = [](const void* from, std::size_t bytes) {
    const auto* words = static_cast<const std::uint64_t*>(from);
    std::uint64_t sum = 0;
    for (std::size_t i = 0; i < bytes / 8; ++i) sum += words[i];
    benchmark::DoNotOptimize(sum);
  };
  for (auto _ : state) {
    std::memset(nearest.data(), 255, 2 * nearest.size());
    std::memset(image.data(), 0, image.size());
    for (const cv::Mat& depth : s.depths) read(depth.data, 2 * depth.total());
    for (std::size_t i = 0; i < prepared.cells.size(); ++i) {
      std::uint16_t& cell = nearest[static_cast<std::size_t>(prepared.cells[i])];
      cell = std::min(cell, prepared.depths[i]);
      if (isColored)
        std::memcpy(&image[3 * static_cast<std::size_t>(prepared.cells[i])],
                    &prepared.pixels[3 * i], 3);
    }
    for (int pass = 0; pass < 2 && !isColored; ++pass) read(nearest.data(), 2 * nearest.size());
    benchmark::ClobberMemory();
  }
}

void sizes(benchmark::internal::Benchmark* bench) {
  bench->Unit(benchmark::kMicrosecond)->ArgNames({"cameras", "width", "grid"});
  for (const int cameras : {1, 4})
    for (const int width : {640, 1280})
      for (const int grid : {500, 2000}) bench->Args({cameras, width, grid});
}

BENCHMARK_CAPTURE(shipped, falseColor, false)->Apply(sizes);
BENCHMARK_CAPTURE(plain, falseColor, false)->Apply(sizes);
BENCHMARK_CAPTURE(peer, falseColor, false)->Apply(sizes);
BENCHMARK_CAPTURE(bare, falseColor, false)->Apply(sizes);
BENCHMARK_CAPTURE(shipped, color, true)->Apply(sizes);
BENCHMARK_CAPTURE(plain, color, true)->Apply(sizes);
BENCHMARK_CAPTURE(peer, color, true)->Apply(sizes);
BENCHMARK_CAPTURE(bare, color, true)->Apply(sizes);

} // namespace
} // namespace velmorn
