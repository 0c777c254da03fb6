// Heights as colours.
#include "velmorn/height_picture.h"

#include <gmock/gmock.h>

namespace velmorn::tool {
namespace {

TEST(HeightPicture, SpreadsTheColoursOverTheRange) {
  const cv::Mat heights = (cv::Mat_<float>(1, 3) << 10, 20, 15);
  const HeightRange range = heightRangeOf(heights);
  EXPECT_EQ(range.lowest, 10);
  EXPECT_EQ(range.highest, 20);
  const cv::Mat colours = heightColours(heights, range);
  const ColourBar bar = heightLegend(range);
  ASSERT_EQ(bar.colours.size(), 256U);
  EXPECT_EQ(colours.at<cv::Vec3b>(0), bar.colours.front());
  EXPECT_EQ(colours.at<cv::Vec3b>(1), bar.colours.back());
  EXPECT_EQ(colours.at<cv::Vec3b>(2), bar.colours[128]);
  EXPECT_NE(bar.colours.front(), bar.colours.back());
}

TEST(HeightPicture, MarksTheEndsAndRoundHeights) {
  const ColourBar bar = heightLegend({10.3, 20.3});
  ASSERT_EQ(bar.marks.size(), 7U);
  EXPECT_EQ(bar.marks[0].text, "10.3");
  EXPECT_EQ(bar.marks[1].text, "20.3");
  EXPECT_EQ(bar.marks[2].text, "12");
  EXPECT_NEAR(bar.marks[2].place, 0.17, 1e-12);
}

TEST(HeightPicture, TakesAFlatScene) {
  const cv::Mat heights(2, 2, CV_32FC1, cv::Scalar(512.5));
  const HeightRange range = heightRangeOf(heights);
  const ColourBar bar = heightLegend(range);
  ASSERT_EQ(bar.colours.size(), 1U);
  EXPECT_EQ(heightColours(heights, range).at<cv::Vec3b>(3), bar.colours[0]);
  ASSERT_EQ(bar.marks.size(), 1U);
  EXPECT_EQ(bar.marks[0].text, "512.5");
}

} // namespace
} // namespace velmorn::tool
