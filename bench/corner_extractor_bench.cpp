// The corner extractor on rendered boards, beside OpenCV's ChArUco on a board of the same geometry
// in the same views; and on a board that fills the image with thousands of corners.
//
// Counters: recall (of the corners at least five pixels inside the image; where there are more than
// 512, of 512), rms in pixels, corners and seconds per image (an iteration does all the views). The
// extractor's seeds come from the truth, rounded; a reader's time is not in its figures. ChArUco's
// include its markers, and its rms is taken after its mean error of each image.
#include <algorithm>
#include <cmath>
#include <map>
#include <memory>
#include <vector>

#include <benchmark/benchmark.h>

#include "brantis64/corner_extractor.h"
#include "providers/brantis64/board_view.h"
#ifdef VELMORN_BENCH_ARUCO
#include <opencv2/aruco/charuco.hpp>
#endif

namespace {

using velmorn::brantis::BoardCorner;
using velmorn::brantis::BoardView;

constexpr int kViews = 3;

// Figures over all views.
struct Quality {
  double wanted = 0, found = 0, squares = 0, wrong = 0;

  void report(benchmark::State& state) const {
    state.counters["recall"] = found / wanted;
    state.counters["rms"] = std::sqrt(squares / found);
    state.counters["wrong"] = wrong;
    state.counters["corners"] = found / kViews;
    using benchmark::Counter;
    state.counters["seconds"] =
        Counter(kViews, Counter::kIsIterationInvariantRate | Counter::kInvert);
  }
};

velmorn::tool::CodeBoardSpec boardSpec() { return {40, 30, 20}; }
velmorn::tool::CodeBoardSpec largeBoardSpec() { return {140, 120, 20}; }

std::vector<BoardView> makeViews(const velmorn::tool::CodeBoardSpec& board, int width, int height,
                                 int square) {
  std::vector<BoardView> views;
  for (int k = 0; k < kViews; ++k) {
    velmorn::brantis::ViewOptions options;
    options.imageSize = {width, height};
    options.board = board;
    options.squarePixels = square;
    options.tilt = 18.0 * k;
    options.tiltDirection = 70.0 * k;
    options.roll = 5.0 + 50 * k;
    options.light = 0.3;
    options.effects.seed = static_cast<std::uint64_t>(k) + 1;
    views.push_back(makeView(options));
  }
  return views;
}

// Rendered once per case: columns, width, height, side of a square in pixels.
const std::vector<BoardView>& views(const velmorn::tool::CodeBoardSpec& board,
                                    const benchmark::State& state) {
  static std::map<std::vector<std::int64_t>, std::vector<BoardView>> cache;
  auto& entry = cache[{board.columns, state.range(0), state.range(1), state.range(2)}];
  if (entry.empty())
    entry = makeViews(board, static_cast<int>(state.range(0)), static_cast<int>(state.range(1)),
                      static_cast<int>(state.range(2)));
  return entry;
}

void extractor(benchmark::State& state, const velmorn::tool::CodeBoardSpec& board) {
  const std::vector<BoardView>& all = views(board, state);
  std::vector<std::vector<BoardCorner>> corners(all.size());
  for (auto _ : state)
    for (std::size_t k = 0; k < all.size(); ++k)
      benchmark::DoNotOptimize(
          extractCorners(all[k].image, all[k].seedsOf(all[k].centralSquare()), corners[k]));

  Quality quality;
  for (std::size_t k = 0; k < all.size(); ++k) {
    const auto comparison = compare(all[k], corners[k]);
    const auto right = static_cast<double>(corners[k].size() - comparison.wrong);
    const double wanted =
        std::min<double>(static_cast<double>(comparison.visible), velmorn::brantis::kMostCorners);
    quality.wanted += wanted;
    quality.found += std::min(wanted, right);
    quality.squares += comparison.rms * comparison.rms * std::min(wanted, right);
    quality.wrong += static_cast<double>(comparison.wrong);
  }
  quality.report(state);
}

void sizes(benchmark::internal::Benchmark* bench) {
  for (const std::vector<std::int64_t>& size : {std::vector<std::int64_t>{640, 480, 24},
                                                {640, 480, 48},
                                                {1280, 960, 32},
                                                {1280, 960, 48},
                                                {1280, 960, 80},
                                                {2448, 2048, 48},
                                                {2448, 2048, 140}})
    bench->Args(size);
  bench->ArgNames({"width", "height", "square"})->Unit(benchmark::kMillisecond);
}

void fullFrames(benchmark::internal::Benchmark* bench) {
  for (const std::int64_t square : {16, 20, 24, 32, 48}) bench->Args({2448, 2048, square});
  bench->ArgNames({"width", "height", "square"})->Unit(benchmark::kMillisecond);
}

BENCHMARK_CAPTURE(extractor, board, boardSpec())->Apply(sizes);
BENCHMARK_CAPTURE(extractor, full_frame, largeBoardSpec())->Apply(fullFrames);

#ifdef VELMORN_BENCH_ARUCO

cv::Ptr<cv::aruco::CharucoBoard> charucoBoard() {
  const auto spec = boardSpec();
  return cv::aruco::CharucoBoard::create(
      spec.columns, spec.rows, 1.0F, static_cast<float>(velmorn::tool::kCodeShare),
      cv::aruco::getPredefinedDictionary(cv::aruco::DICT_4X4_1000));
}

// The ChArUco board in units of squares. Its markers have 6 x 6 modules with their black border, so
// everything lies on a raster of an eighth of a square.
class CharucoPicture : public velmorn::PlanePicture {
 public:
  CharucoPicture() {
    constexpr int kPixels = 4; // per module; its middle is looked at
    const auto spec = boardSpec();
    const cv::Size modules(kModules * spec.columns, kModules * spec.rows);
    cv::Mat drawn;
    charucoBoard()->draw(modules * kPixels, drawn, 0, 1);
    isDark_.create(modules);
    for (int y = 0; y < modules.height; ++y)
      for (int x = 0; x < modules.width; ++x)
        isDark_(y, x) = drawn.at<uchar>(kPixels * y + kPixels / 2, kPixels * x + kPixels / 2) < 128;
  }

  int area(const cv::Vec2f& p) const override {
    const int x = cvFloor(p[0] * kModules), y = cvFloor(p[1] * kModules);
    if (x >= 0 && y >= 0 && x < isDark_.cols && y < isDark_.rows)
      return (y * isDark_.cols + x) * 2 + isDark_(y, x);
    const bool isPaper = x >= -kModules && y >= -kModules && x < isDark_.cols + kModules &&
                         y < isDark_.rows + kModules;
    return isPaper ? kPaper : kOutside;
  }

  float shade(int area) const override {
    if (area == kOutside) return velmorn::kRenderedBackground;
    return area != kPaper && area % 2 == 1 ? velmorn::kRenderedBlack : velmorn::kRenderedWhite;
  }

 private:
  static constexpr int kModules = 8; // per square
  static constexpr int kPaper = -1, kOutside = -2;

  cv::Mat1b isDark_;
};

// The views' images with the other board on the same plane.
std::vector<cv::Mat> charucoImages(const std::vector<BoardView>& all) {
  std::vector<cv::Mat> images;
  const CharucoPicture picture;
  for (std::size_t k = 0; k < all.size(); ++k) {
    cv::Mat_<float> image = velmorn::PlaneRenderer(all[k].camera)
                                .render(picture, boardSpec().square, all[k].camFromBoard);
    for (int y = 0; y < image.rows; ++y)
      for (int x = 0; x < image.cols; ++x)
        image(y, x) *= static_cast<float>(1 + 0.3 * (1.0 * x / image.cols - 0.5));
    images.push_back(velmorn::finishImage(image, {0.8, 3, static_cast<std::uint64_t>(k) + 1}));
  }
  return images;
}

// A corner counts for the nearest true one, whatever its label.
void addCharuco(const BoardView& view, const std::vector<cv::Point2f>& corners, Quality& quality) {
  const auto spec = boardSpec();
  std::vector<cv::Point2f> truth;
  for (const auto& c : view.visibleCorners(5))
    if (c.column > 0 && c.row > 0 && c.column < spec.columns && c.row < spec.rows)
      truth.push_back(c.pixel); // it has inner corners only
  quality.wanted += static_cast<double>(truth.size());
  std::vector<cv::Point2d> errors;
  cv::Point2d mean;
  for (const cv::Point2f& corner : corners) {
    cv::Point2d nearest(1e9, 0);
    for (const cv::Point2f& t : truth)
      if (cv::norm(cv::Point2d(corner - t)) < cv::norm(nearest)) nearest = corner - t;
    if (cv::norm(nearest) > 2) continue;
    errors.push_back(nearest);
    mean += nearest;
  }
  if (errors.empty()) return;
  mean *= 1 / static_cast<double>(errors.size());
  for (const cv::Point2d& error : errors) {
    quality.squares += (error - mean).dot(error - mean);
    if (cv::norm(error - mean) > 0.5) ++quality.wrong;
  }
  quality.found += static_cast<double>(errors.size());
}

void charuco(benchmark::State& state) {
  const std::vector<BoardView>& all = views(boardSpec(), state);
  const std::vector<cv::Mat> images = charucoImages(all);
  const auto board = charucoBoard();
  std::vector<std::vector<cv::Point2f>> found(all.size());
  for (auto _ : state)
    for (std::size_t k = 0; k < all.size(); ++k) {
      std::vector<std::vector<cv::Point2f>> markers;
      std::vector<int> ids, cornerIds;
      cv::aruco::detectMarkers(images[k], board->dictionary, markers, ids);
      found[k].clear();
      if (!ids.empty())
        cv::aruco::interpolateCornersCharuco(markers, ids, images[k], board, found[k], cornerIds);
      benchmark::DoNotOptimize(found[k].data());
    }
  Quality quality;
  for (std::size_t k = 0; k < all.size(); ++k) addCharuco(all[k], found[k], quality);
  quality.report(state);
}

BENCHMARK(charuco)->Apply(sizes);

#endif // VELMORN_BENCH_ARUCO

} // namespace
