// The mean of a burst of depth images: the exported function beside the plain form, beside the ways
// to do it with OpenCV, on one thread, and beside reading the burst alone. They take turns; the
// counters are times relative to the exported function's.
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

#include "burst_reading.h"
#include "depth/plain_average.h"

namespace velmorn {
namespace {

// Makes rounding a cut: exact for means of up to 60 images.
constexpr double kCutOff = -0.5 + 1.0 / 64;

std::vector<cv::Mat> matrices(const DepthBurst& burst) {
  std::vector<cv::Mat> result;
  for (const tagOzKImage& image : burst.images)
    result.emplace_back(static_cast<int>(image.height), static_cast<int>(image.width), CV_16UC1,
                        image.data);
  return result;
}

// The sums and counts of an OpenCV user, as the mean.
void finish(const cv::Mat& sum, const cv::Mat& count, double countScale, cv::Mat& average) {
  cv::Mat divisor, mean;
  count.convertTo(divisor, CV_32F, countScale);
  cv::max(divisor, 1.0, divisor);
  cv::divide(sum, divisor, mean);
  mean.convertTo(average, CV_16U, 1, kCutOff);
}

// Sums and counts through a mask.
void accumulateMasked(const std::vector<cv::Mat>& images, cv::Mat& average) {
  cv::Mat sum = cv::Mat::zeros(images[0].size(), CV_32F), count = sum.clone(), mask;
  for (const cv::Mat& image : images) {
    cv::compare(image, 0, mask, cv::CMP_GT);
    cv::accumulate(image, sum, mask);
    cv::accumulate(mask, count);
  }
  finish(sum, count, 1.0 / 255, average);
}

// Zeros change no sum; counts in bytes (up to 255 images).
void accumulateAndCountBytes(const std::vector<cv::Mat>& images, cv::Mat& average) {
  cv::Mat sum = cv::Mat::zeros(images[0].size(), CV_32F), mask;
  cv::Mat zeros = cv::Mat::zeros(images[0].size(), CV_8U);
  for (const cv::Mat& image : images) {
    cv::accumulate(image, sum);
    cv::compare(image, 0, mask, cv::CMP_EQ);
    cv::bitwise_and(mask, 1, mask);
    cv::add(zeros, mask, zeros);
  }
  cv::Mat count;
  cv::subtract(static_cast<double>(images.size()), zeros, count);
  finish(sum, count, 1, average);
}

// Counts as the images' own samples, cut at 1.
void accumulateAndCountWords(const std::vector<cv::Mat>& images, cv::Mat& average) {
  cv::Mat sum = cv::Mat::zeros(images[0].size(), CV_32F), one;
  cv::Mat count = cv::Mat::zeros(images[0].size(), CV_16U);
  for (const cv::Mat& image : images) {
    cv::accumulate(image, sum);
    cv::min(image, 1, one);
    cv::add(count, one, count);
  }
  finish(sum, count, 1, average);
}

void depthAverage(benchmark::State& state) {
  cv::setNumThreads(1);
  DepthBurst burst =
      randomDepthBurst(static_cast<int>(state.range(0)), static_cast<std::uint32_t>(state.range(1)),
                       static_cast<std::uint32_t>(state.range(2)), 0.2, 1);
  const std::vector<cv::Mat> images = matrices(burst);
  cv::Mat average(images[0].size(), CV_16U), plain = average.clone(), written = average.clone();
  cv::Mat masked, bytes, words;
  takeTurns(state, {{"shipped",
                     [&] {
                       ozkCalAverageDepthImage(burst.images.data(), burst.count(),
                                               average.ptr<unsigned short>());
                     }},
                    {"plain",
                     [&] {
                       plainAverageDepth(burst.images.data(), burst.count(), burst.size(),
                                         plain.ptr<unsigned short>());
                     }},
                    {"cv_masked", [&] { accumulateMasked(images, masked); }},
                    {"cv_count8", [&] { accumulateAndCountBytes(images, bytes); }},
                    {"cv_count16", [&] { accumulateAndCountWords(images, words); }},
                    {"reading", [&] { readBurst(burst); }},
                    {"reading_writing", [&] { readAndWrite(burst, written); }}});
  for (const cv::Mat& other : {plain, masked, bytes, words})
    if (cv::norm(average, other, cv::NORM_INF) != 0) state.SkipWithError("averages differ");
  state.SetBytesProcessed(state.iterations() * burstBytes(burst));
}

// Few iterations of the function's own are many of its rivals'.
BENCHMARK(depthAverage)
    ->Args({10, 640, 480})
    ->Iterations(100)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(depthAverage)
    ->Args({30, 1920, 1080})
    ->Iterations(12)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

} // namespace
} // namespace velmorn
