// Colour images that belong to depth images.
#include "velmorn/colour_image.h"

#include <gtest/gtest.h>

#include <opencv2/imgcodecs.hpp>

#include "support/temp_dir.h"
#include "tools/expect_tool_error.h"

namespace velmorn::tool {
namespace {

class ColourImage : public TempDirTest {
 protected:
  cv::Mat readBack(const cv::Mat& image) {
    cv::imwrite("c.png", image);
    return readColourImage("c.png", {4, 3});
  }
  std::string errorOf(const cv::Mat& image) {
    return toolError([&] { readBack(image); });
  }
};

TEST_F(ColourImage, ColourIsBlueFirst) {
  const cv::Mat image(3, 4, CV_8UC3, cv::Scalar(10, 20, 30));
  EXPECT_EQ(cv::norm(readBack(image), image, cv::NORM_INF), 0);
}

TEST_F(ColourImage, GreyBecomesThreeEqualChannels) {
  const cv::Mat expected(3, 4, CV_8UC3, cv::Scalar(77, 77, 77));
  EXPECT_EQ(cv::norm(readBack(cv::Mat(3, 4, CV_8UC1, cv::Scalar(77))), expected, cv::NORM_INF), 0);
}

TEST_F(ColourImage, RefusesOtherKindsAndSizes) {
  EXPECT_EQ(errorOf(cv::Mat(3, 4, CV_8UC4, cv::Scalar::all(1))),
            "c.png: not a colour image of 8 bits without alpha, but 8-bit colour with alpha");
  EXPECT_EQ(errorOf(cv::Mat(3, 4, CV_16UC1, cv::Scalar(1))),
            "c.png: not a colour image of 8 bits without alpha, but 16-bit grey");
  EXPECT_EQ(errorOf(cv::Mat(4, 3, CV_8UC3, cv::Scalar::all(1))),
            "c.png is 3x4, but the depth image is 4x3");
  EXPECT_EQ(toolError([] { readColourImage("gone.png", {4, 3}); }), "no such file: gone.png");
}

} // namespace
} // namespace velmorn::tool
