// What the false colours of an aerial view stand for: hand-worked counts.
#include "velmorn/depth_legend.h"

#include <gmock/gmock.h>

namespace velmorn::tool {
namespace {

const cv::Vec3b kNear(1, 1, 1);
const cv::Vec3b kFar(2, 2, 2);

// Row of samples, and a picture with kNear for 500 and kFar for 1000.
std::optional<ColourBar> legendOf(const std::vector<std::uint16_t>& samples, double depthUnit) {
  const cv::Mat depth(1, static_cast<int>(samples.size()), CV_16UC1,
                      const_cast<std::uint16_t*>(samples.data()));
  cv::Mat picture(depth.size(), CV_8UC3, cv::Scalar(0, 0, 0));
  picture.setTo(cv::Scalar(kNear), depth == 500);
  picture.setTo(cv::Scalar(kFar), depth == 1000);
  return depthLegend(depth, picture, depthUnit);
}

TEST(DepthLegend, GivesEveryDepthItsPartOfTheCells) {
  const std::optional<ColourBar> bar = legendOf({0, 500, 1000, 1000, 0, 1000}, 0.5);
  ASSERT_TRUE(bar);
  ASSERT_EQ(bar->colours.size(), 256U);
  EXPECT_EQ(bar->colours[0], kNear);
  EXPECT_EQ(bar->colours[63], kNear);
  EXPECT_EQ(bar->colours[64], kFar);
  EXPECT_EQ(bar->colours[255], kFar);
  ASSERT_EQ(bar->marks.size(), 2U); // what lies between is one of the two
  EXPECT_EQ(bar->marks[0].text, "250 near");
  EXPECT_EQ(bar->marks[0].place, 0);
  EXPECT_EQ(bar->marks[1].text, "500 far");
  EXPECT_EQ(bar->marks[1].place, 1);
}

TEST(DepthLegend, MarksTheDepthsBetween) {
  std::vector<std::uint16_t> samples(800);
  for (std::size_t i = 0; i < samples.size(); ++i) samples[i] = static_cast<std::uint16_t>(i + 1);
  const std::optional<ColourBar> bar = legendOf(samples, 1);
  ASSERT_EQ(bar->marks.size(), 9U);
  EXPECT_EQ(bar->marks[0].text, "1 near");
  EXPECT_EQ(bar->marks[1].text, "800 far");
  EXPECT_EQ(bar->marks[5].text, "401");
  EXPECT_EQ(bar->marks[5].place, 0.5);
}

TEST(DepthLegend, HasOneMarkForOneDepth) {
  const std::optional<ColourBar> bar = legendOf({500, 500, 0}, 1);
  ASSERT_EQ(bar->marks.size(), 1U);
  EXPECT_EQ(bar->marks[0].text, "500");
}

TEST(DepthLegend, IsNotThereWithoutSamples) { EXPECT_FALSE(legendOf({0, 0}, 1)); }

} // namespace
} // namespace velmorn::tool
