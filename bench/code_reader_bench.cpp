// The data-code reader by image size and size of the squares, with the share of images that it
// reads, and images without codes.
#include <benchmark/benchmark.h>

#include <cmath>
#include <vector>

#include <opencv2/calib3d.hpp>
#include <opencv2/imgproc.hpp>

#include "quillet64/code_reader.h"
#include "support/code_board_renderer.h"

namespace velmorn {
namespace {

constexpr int kViews = 12;
constexpr double kMaxTilt = 40; // degrees

const tool::CodeBoardSpec kBoard{20, 14, 20};

// Every rotation, tilts up to the largest, a usual lens, blur and noise of a usual camera.
std::vector<cv::Mat> boardViews(const cv::Size& size, double squarePixels, bool mirrored) {
  constexpr double kDegree = CV_PI / 180;
  const double focal = 1.1 * size.width;
  const CodeBoardRenderer renderer(distortedCamera(size, focal));
  const tool::CodeBoardSymbols symbols(kBoard);
  std::vector<cv::Mat> views;
  for (int i = 0; i < kViews; ++i) {
    const double axis = 2.4 * i, tilt = kMaxTilt * kDegree * (i + 1) / kViews;
    cv::Matx33d turned, tilted;
    cv::Rodrigues(cv::Vec3d(0, 0, 2 * CV_PI * i / kViews + 0.1), turned);
    cv::Rodrigues(cv::Vec3d(std::cos(axis) * tilt, std::sin(axis) * tilt, 0), tilted);
    const cv::Matx33d R = tilted * turned;
    const cv::Vec3d middle(kBoard.columns * kBoard.square / 2, kBoard.rows * kBoard.square / 2, 0);
    const cv::Vec3d T = cv::Vec3d(0, 0, focal * kBoard.square / squarePixels) - R * middle;
    const cv::Matx44d camFromBoard(R(0, 0), R(0, 1), R(0, 2), T[0], R(1, 0), R(1, 1), R(1, 2), T[1],
                                   R(2, 0), R(2, 1), R(2, 2), T[2], 0, 0, 0, 1);
    cv::Mat view =
        renderer.render(kBoard, symbols, camFromBoard, {0.8, 3, static_cast<std::uint64_t>(i) + 1});
    if (mirrored) cv::flip(view, view, 1);
    views.push_back(view);
  }
  return views;
}

void readAll(benchmark::State& state, const std::vector<cv::Mat>& images) {
  std::size_t next = 0;
  int read = 0, tried = 0;
  for (auto _ : state) {
    const auto code = quillet::findCode(images[next]);
    benchmark::DoNotOptimize(code);
    read += code ? 1 : 0;
    ++tried;
    next = (next + 1) % images.size();
  }
  state.counters["read"] = tried > 0 ? static_cast<double>(read) / tried : 0;
}

// Arguments: width, height, side of a square in pixels.
void boards(benchmark::State& state) {
  const cv::Size size(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
  readAll(state, boardViews(size, static_cast<double>(state.range(2)), false));
}

// Mirrored boards: as much to look at as there can be, and nothing to be read.
void mirroredBoards(benchmark::State& state) {
  const cv::Size size(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
  readAll(state, boardViews(size, static_cast<double>(state.range(2)), true));
}

// Arguments: width, height, blur of the noise in pixels.
void noise(benchmark::State& state) {
  cv::Mat grey(static_cast<int>(state.range(1)), static_cast<int>(state.range(0)), CV_8UC1);
  cv::RNG(1).fill(grey, cv::RNG::UNIFORM, 0, 256);
  if (state.range(2) > 0) {
    cv::GaussianBlur(grey, grey, {0, 0}, static_cast<double>(state.range(2)));
    cv::normalize(grey, grey, 0, 255, cv::NORM_MINMAX);
  }
  readAll(state, {grey});
}

void sizesAndSquares(benchmark::internal::Benchmark* bench) {
  const int sizes[][2] = {{640, 480}, {800, 600}, {1280, 960}, {2448, 2048}};
  for (const auto& size : sizes)
    for (const int square : {24, 48, 80}) bench->Args({size[0], size[1], square});
}

void sizesAndBlurs(benchmark::internal::Benchmark* bench) {
  const int sizes[][2] = {{640, 480}, {800, 600}, {1280, 960}, {2448, 2048}, {8000, 6000}};
  for (const auto& size : sizes)
    for (const int blur : {0, 2}) bench->Args({size[0], size[1], blur});
}

BENCHMARK(boards)->Apply(sizesAndSquares)->Unit(benchmark::kMillisecond);
BENCHMARK(mirroredBoards)->Apply(sizesAndSquares)->Unit(benchmark::kMillisecond);
BENCHMARK(noise)->Apply(sizesAndBlurs)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace velmorn
