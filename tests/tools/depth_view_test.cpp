// Depth samples: which ones count, and where they are.
#include "velmorn/depth_view.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace velmorn::tool {
namespace {

// f = 500 and 400, principal point (2, 1).
DepthView view(const cv::Mat& counts, double unit) {
  DepthView view;
  view.counts = counts.clone();
  view.unit = unit;
  view.model.intrinsic = {{500, 0, 2, 0, 400, 1, 0, 0, 1}};
  return view;
}

TEST(DepthView, ZeroAndSaturationAreNoMeasurement) {
  DepthView seen = view((cv::Mat_<std::uint16_t>(1, 4) << 0, 1, 65534, 65535), 1);
  EXPECT_EQ(dropUnusableSamples(seen, {}), 2U);
  const cv::Mat left = (cv::Mat_<std::uint16_t>(1, 4) << 0, 1, 65534, 0);
  EXPECT_EQ(cv::norm(seen.counts, left, cv::NORM_INF), 0);
}

TEST(DepthView, RangeIsInLengthUnitsWithBothEnds) {
  DepthView seen = view((cv::Mat_<std::uint16_t>(1, 4) << 199, 200, 400, 401), 0.5);
  EXPECT_EQ(dropUnusableSamples(seen, {100, 200}), 2U);
  const cv::Mat left = (cv::Mat_<std::uint16_t>(1, 4) << 0, 200, 400, 0);
  EXPECT_EQ(cv::norm(seen.counts, left, cv::NORM_INF), 0);
}

TEST(DepthView, SamplesByHand) {
  cv::Mat counts(3, 4, CV_16UC1, cv::Scalar(0));
  counts.at<std::uint16_t>(2, 0) = 1000;
  counts.at<std::uint16_t>(2, 3) = 2000;
  const std::vector<DepthSample> samples = samplesOfRow(view(counts, 0.5), 2);
  ASSERT_EQ(samples.size(), 2U);
  EXPECT_EQ(samples[0].column, 0);
  EXPECT_LT(cv::norm(samples[0].pointInCam - cv::Vec3d(-2, 1.25, 500)), 1e-12);
  EXPECT_EQ(samples[1].column, 3);
  EXPECT_LT(cv::norm(samples[1].pointInCam - cv::Vec3d(2, 2.5, 1000)), 1e-12);
  EXPECT_TRUE(samplesOfRow(view(counts, 0.5), 1).empty());
}

TEST(DepthView, EveryThirdPixel) {
  const cv::Mat counts(1, 8, CV_16UC1, cv::Scalar(10));
  const std::vector<DepthSample> samples = samplesOfRow(view(counts, 1), 0, 1, 3);
  ASSERT_EQ(samples.size(), 3U);
  EXPECT_EQ(samples[0].column, 1);
  EXPECT_EQ(samples[2].column, 7);
}

// x'' = x (1 + k1 r^2) on the axis y = 0: x = 0.1, k1 = -1 gives x'' = 0.099.
TEST(DepthView, TakesTheLensDistortionOut) {
  DepthView seen = view(cv::Mat(2, 101, CV_16UC1, cv::Scalar(0)), 1);
  seen.model.intrinsic = {{1000 / 0.99, 0, 0, 0, 400, 1, 0, 0, 1}};
  seen.model.distortion.coeffs[0] = -1;
  seen.counts.at<std::uint16_t>(1, 100) = 1000;
  const std::vector<DepthSample> samples = samplesOfRow(seen, 1);
  ASSERT_EQ(samples.size(), 1U);
  EXPECT_LT(cv::norm(samples[0].pointInCam - cv::Vec3d(100, 0, 1000)), 1e-3);
}

} // namespace
} // namespace velmorn::tool
