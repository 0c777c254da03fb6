// The pixels as a picture of the modules, and back.
#include "quillet64/module_deconvolution.h"

#include <cmath>
#include <string>

#include <gtest/gtest.h>
#include <opencv2/imgproc.hpp>

#include "providers/quillet64/code_squares.h"
#include "quillet64/blurred_code.h"
#include "quillet64/module_sampling.h"
#include "velmorn/data_matrix.h"

namespace velmorn::quillet {
namespace {

// A square whose modules are blurred and then made small.
struct SmallCode {
  cv::Mat_<uchar> dark;
  cv::Mat grey;
  Quad quad;
  double sigma = 0;
};

// A module of 12 pixels made smaller by a whole number.
SmallCode smallCode(const std::string& text, int modules, int reduction, double sigma) {
  SmallCode code;
  code.dark = tool::dataMatrix(text, modules);
  DrawnSquare drawn = drawnSquare(code.dark, modules * 16);
  cv::GaussianBlur(drawn.grey, drawn.grey, {0, 0}, sigma * reduction);
  const cv::Size size(drawn.grey.cols / reduction, drawn.grey.rows / reduction);
  cv::resize(drawn.grey({0, 0, size.width * reduction, size.height * reduction}), code.grey, size,
             0, 0, cv::INTER_AREA);
  code.quad = drawn.quad;
  const auto r = static_cast<float>(reduction);
  for (cv::Point2f& p : code.quad) p = (p + cv::Point2f(0.5F, 0.5F)) / r - cv::Point2f(0.5F, 0.5F);
  code.sigma = std::sqrt(sigma * sigma + 1.0 / 12);
  return code;
}

TEST(BlurredCode, SharesOfAModuleAddUpToItsArea) {
  const SmallCode small = smallCode("12,7,20", 12, 6, 0.8);
  const auto look = lookAtSquare(small.grey, small.quad);
  ASSERT_TRUE(look);
  const BlurredCode code = blurredCode(small.grey, small.quad, *look, small.sigma, 12);
  ASSERT_EQ(code.shares.size(), 144U);
  for (const std::size_t module : {std::size_t{66}, std::size_t{90}}) {
    double sum = 0;
    for (const Share& share : code.shares[module]) sum += static_cast<double>(share.weight);
    EXPECT_NEAR(sum, 2 * 2, 0.05); // 2 x 2 pixels
  }
}

TEST(BlurredCode, ModulesAndNeighboursExplainThePixels) {
  const SmallCode small = smallCode("12,7,20", 12, 6, 0.8);
  const SquareLook look{kDrawnBlack, kDrawnWhite, 0, 0};
  const BlurredCode code = blurredCode(small.grey, small.quad, look, small.sigma, 12);
  std::vector<float> rest = code.seen;
  for (std::size_t p = 0; p < rest.size(); ++p) rest[p] -= code.known[p];
  for (std::size_t m = 0; m < code.shares.size(); ++m)
    for (const Share& share : code.shares[m])
      rest[static_cast<std::size_t>(share.pixel)] -=
          share.weight * static_cast<float>(small.dark(static_cast<int>(m)));
  for (const float r : rest) EXPECT_NEAR(r, 0, 0.06);
}

TEST(BlurredCode, SquaresPartlyOutsideTheImageAreHarmless) {
  const cv::Mat grey(20, 20, CV_8UC1, cv::Scalar(99));
  const SquareLook look{20, 220, 0, 0};
  const Quad quad = {cv::Point2f(-15, -15), {30, -14}, {31, 30}, {-14, 31}};
  const BlurredCode code = blurredCode(grey, quad, look, 1, 12);
  EXPECT_EQ(code.seen.size(), 400U);
  const Quad beside = {cv::Point2f(100, 100), {130, 100}, {130, 130}, {100, 130}};
  EXPECT_TRUE(blurredCode(grey, beside, look, 1, 12).seen.empty());
}

TEST(ModuleDeconvolution, BringsBackModulesThatRanTogether) {
  // 2 and 1.5 pixels a module, sigma 1.
  for (const int reduction : {6, 8}) {
    const SmallCode small = smallCode("60,40,12.5", 14, reduction, 1.0);
    const auto look = lookAtSquare(small.grey, small.quad);
    ASSERT_TRUE(look);
    const auto found =
        deconvolvedModules(blurredCode(small.grey, small.quad, *look, small.sigma, 14));
    EXPECT_LE(cv::countNonZero(found != small.dark), 2) << reduction;
    // Thresholding alone is not enough, or the test would say nothing.
    const auto sampled = darkModules(sampleModules(small.grey, small.quad, *look, 14));
    EXPECT_GT(cv::countNonZero(sampled != small.dark), 10) << reduction;
  }
}

TEST(ModuleDeconvolution, NoPixelsLeaveTheBordersOnly) {
  BlurredCode code;
  code.modules = 12;
  code.shares.resize(144);
  const auto found = deconvolvedModules(code);
  EXPECT_EQ(found(11, 5), 1);
  EXPECT_EQ(found(0, 1), 0);
  EXPECT_EQ(found(5, 5), 0);
}

} // namespace
} // namespace velmorn::quillet
