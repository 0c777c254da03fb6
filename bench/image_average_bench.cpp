// The mean of a burst of colour images: the exported function beside the plain form, beside two
// ways to do it with OpenCV, on one thread, and beside reading the burst alone, without and with
// writing an image. They take turns; the counters are times relative to the exported function's.
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

#include "burst_reading.h"
#include "depth/plain_average.h"

namespace velmorn {
namespace {

// Makes rounding a cut: exact for means of up to 60 images.
constexpr double kCutOff = -0.5 + 1.0 / 64;

std::vector<cv::Mat> matrices(const ByteBurst& burst) {
  std::vector<cv::Mat> result;
  for (const tagOzKImage& image : burst.images)
    result.emplace_back(static_cast<int>(image.height), static_cast<int>(image.width), CV_8UC3,
                        image.data);
  return result;
}

void accumulateFloats(const std::vector<cv::Mat>& images, cv::Mat& average) {
  cv::Mat sum = cv::Mat::zeros(images[0].size(), CV_32FC3);
  for (const cv::Mat& image : images) cv::accumulate(image, sum);
  sum.convertTo(average, CV_8U, 1.0 / static_cast<double>(images.size()), kCutOff);
}

// Sums in 16 bits hold up to 257 images.
void addWords(const std::vector<cv::Mat>& images, cv::Mat& average) {
  cv::Mat sum = cv::Mat::zeros(images[0].size(), CV_16UC3);
  for (const cv::Mat& image : images) cv::add(sum, image, sum, cv::noArray(), CV_16U);
  sum.convertTo(average, CV_8U, 1.0 / static_cast<double>(images.size()), kCutOff);
}

void imageAverage(benchmark::State& state) {
  cv::setNumThreads(1);
  ByteBurst burst = randomColourBurst(static_cast<int>(state.range(0)),
                                      static_cast<std::uint32_t>(state.range(1)),
                                      static_cast<std::uint32_t>(state.range(2)), 1);
  const std::vector<cv::Mat> images = matrices(burst);
  cv::Mat average(images[0].size(), CV_8UC3), plain = average.clone(), written = average.clone();
  cv::Mat floats, words;
  takeTurns(
      state,
      {{"shipped", [&] { ozkCalAverageImage(burst.images.data(), burst.count(), average.data); }},
       {"plain",
        [&] { plainAverageBytes(burst.images.data(), burst.count(), burst.size(), plain.data); }},
       {"cv_float", [&] { accumulateFloats(images, floats); }},
       {"cv_16bit", [&] { addWords(images, words); }},
       {"reading", [&] { readBurst(burst); }},
       {"reading_writing", [&] { readAndWrite(burst, written); }}});
  for (const cv::Mat& other : {plain, floats, words})
    if (cv::norm(average, other, cv::NORM_INF) != 0) state.SkipWithError("averages differ");
  state.SetBytesProcessed(state.iterations() * burstBytes(burst));
}

// Few iterations of the function's own are many of its rivals'.
BENCHMARK(imageAverage)
    ->Args({10, 640, 480})
    ->Iterations(100)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(imageAverage)
    ->Args({30, 1920, 1080})
    ->Iterations(12)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

} // namespace
} // namespace velmorn
