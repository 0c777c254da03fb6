// A stitching run over the real stereo set, against a plain loop of the OpenCV calls that it cannot
// do without, and a run that lists one file again and again.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <opencv2/calib3d.hpp>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include "stitching/stitching_types.h"
#include "velmorn64.h"

namespace velmorn {
namespace {

const tagOzKSize kBoard{9, 6};
const cv::Size kPattern(9, 6);
constexpr float kSquare = 25; // mm

using Shots = std::vector<std::vector<cv::Point2f>>;

ImagePathMap stereoSet() {
  const char* folder = std::getenv("VELMORN_STEREO_DATA");
  const std::string from = folder != nullptr ? folder : "/usr/share/doc/opencv-doc/examples/data";
  ImagePathMap paths;
  for (const char* side : {"left", "right"})
    for (const int shot : {1, 2, 3, 4, 5, 6, 7, 8, 9, 11, 12, 13, 14}) {
      char name[8];
      std::snprintf(name, sizeof name, "%02d.jpg", shot);
      paths[side].push_back(from + "/" + side + name);
    }
  return paths;
}

Shots findAll(const std::vector<std::string>& paths) {
  Shots shots;
  for (const std::string& path : paths) {
    const cv::Mat grey = cv::imread(path, cv::IMREAD_GRAYSCALE);
    std::vector<cv::Point2f> corners;
    if (grey.empty()) continue;
    if (cv::findChessboardCorners(grey, kPattern, corners, 13))
      cv::cornerSubPix(grey, corners, {11, 11}, {-1, -1}, {3, 30, 0.01});
    shots.push_back(corners);
  }
  return shots;
}

std::vector<cv::Point3f> board() {
  std::vector<cv::Point3f> points;
  for (int r = 0; r < kBoard.height; ++r)
    for (int c = 0; c < kBoard.width; ++c)
      points.emplace_back(static_cast<float>(c) * kSquare, static_cast<float>(r) * kSquare, 0.0F);
  return points;
}

// Everything both sides start from.
struct Job {
  ImagePathMap paths = stereoSet();
  std::map<std::string, tagOzKCamIntrinsic> intrinsics;
  std::map<std::string, tagOzKCamDistortion> distortions;
  MatrixMap matrices, coefficients;

  Job() {
    for (const auto& [camID, files] : paths) calibrate(camID, findAll(files));
  }
  void calibrate(const std::string& camID, Shots shots) {
    shots.erase(std::remove_if(shots.begin(), shots.end(), [](auto& s) { return s.empty(); }),
                shots.end());
    cv::Mat matrix, distortion;
    std::vector<cv::Mat> rotations, translations;
    const std::vector<std::vector<cv::Point3f>> boards(shots.size(), board());
    cv::calibrateCamera(boards, shots, {640, 480}, matrix, distortion, rotations, translations);
    for (int k = 0; k < 9; ++k) intrinsics[camID].matrix[k] = matrix.at<double>(k / 3, k % 3);
    distortions[camID] = {};
    for (int k = 0; k < 5; ++k) distortions[camID].coeffs[k] = distortion.at<double>(k);
    matrices[camID] = matrix;
    coefficients[camID] = distortion;
  }
};

const Job& job() {
  static const Job shared;
  return shared;
}

// The library's messages go nowhere for the duration.
class QuietConsole {
 public:
  QuietConsole() : kept_(std::cout.rdbuf(nullptr)) {}
  ~QuietConsole() {
    std::cout.rdbuf(kept_);
    std::cout.clear();
  }
  QuietConsole(const QuietConsole&) = delete;
  QuietConsole& operator=(const QuietConsole&) = delete;

 private:
  std::streambuf* kept_;
};

void stitchingRun(benchmark::State& state) {
  const Job& data = job();
  OzKStitchResult result{};
  for (auto _ : state) {
    const QuietConsole quiet;
    const int status = ozkVelmornByChess({"left", "right"}, data.paths, data.intrinsics,
                                         data.distortions, kBoard, kSquare, result, 3, false, 0);
    if (status != kOzkSuccess) state.SkipWithError("stitching failed");
  }
}

void estimatePose(const std::string& camID, const std::vector<cv::Point2f>& corners) {
  cv::Mat rotation, translation;
  cv::solvePnP(board(), corners, job().matrices.at(camID), job().coefficients.at(camID), rotation,
               translation);
  benchmark::DoNotOptimize(translation.data);
}

void plainOpenCvLoop(benchmark::State& state) {
  const Job& data = job();
  for (auto _ : state) {
    const Shots left = findAll(data.paths.at("left")), right = findAll(data.paths.at("right"));
    for (std::size_t k = 0; k < left.size(); ++k) {
      if (left[k].empty() || right[k].empty()) continue;
      estimatePose("left", left[k]);
      estimatePose("right", right[k]);
    }
  }
}

// The plain-record form lists one file `num` times: the first argument.
void oneFileManyTimes(benchmark::State& state) {
  Job data = job();
  for (auto& [camID, files] : data.paths)
    files.assign(static_cast<std::size_t>(state.range(0)), files.front());
  OzKStitchResult result{};
  for (auto _ : state) {
    const QuietConsole quiet;
    const int status = ozkVelmornByChess({"left", "right"}, data.paths, data.intrinsics,
                                         data.distortions, kBoard, kSquare, result, 1, false, 0);
    if (status != kOzkSuccess) state.SkipWithError("stitching failed");
  }
}

BENCHMARK(stitchingRun)->Unit(benchmark::kMillisecond);
BENCHMARK(plainOpenCvLoop)->Unit(benchmark::kMillisecond);
BENCHMARK(oneFileManyTimes)->Arg(1)->Arg(13)->Arg(100)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace velmorn
