// Averages of bursts: hand-worked means, and images that do not fit.
#include "velmorn/image_average.h"

#include <gmock/gmock.h>

#include <opencv2/imgcodecs.hpp>

#include "support/temp_dir.h"
#include "tools/expect_tool_error.h"

namespace velmorn::tool {
namespace {

class ImageAverage : public TempDirTest {
 protected:
  std::string refusal(const cv::Mat& second) {
    cv::imwrite("a.png", cv::Mat(2, 3, CV_8UC1, cv::Scalar(1)));
    cv::imwrite("b.png", second);
    return toolError([] { readBurst({"a.png", "b.png"}); });
  }
};

TEST_F(ImageAverage, LeavesOutWhatWasNotMeasured) {
  using Depth = cv::Mat_<std::uint16_t>;
  const Depth mean = averageOf({(Depth(1, 3) << 1000, 0, 1000), (Depth(1, 3) << 0, 0, 1000),
                                (Depth(1, 3) << 1002, 0, 1001)});
  EXPECT_EQ(mean(0, 0), 1001);
  EXPECT_EQ(mean(0, 1), 0);
  EXPECT_EQ(mean(0, 2), 1000);
}

TEST_F(ImageAverage, CountsBlack) {
  const cv::Mat mean = averageOf({cv::Mat(2, 3, CV_8UC3, cv::Scalar(10, 0, 255)),
                                  cv::Mat(2, 3, CV_8UC3, cv::Scalar(11, 10, 255))});
  EXPECT_EQ(mean.type(), CV_8UC3);
  EXPECT_EQ(mean.at<cv::Vec3b>(1, 2), cv::Vec3b(10, 5, 255));
}

TEST_F(ImageAverage, RefusesWhatDiffersFromTheFirst) {
  EXPECT_EQ(refusal(cv::Mat(3, 3, CV_8UC1, cv::Scalar(1))),
            "b.png is 3x3 8-bit grey, but a.png is 3x2 8-bit grey");
  EXPECT_EQ(refusal(cv::Mat(2, 3, CV_16UC1, cv::Scalar(1))),
            "b.png is 3x2 16-bit grey, but a.png is 3x2 8-bit grey");
  EXPECT_EQ(refusal(cv::Mat(2, 3, CV_8UC4, cv::Scalar(1))),
            "b.png is 8-bit colour with alpha; 16-bit depth, 8-bit grey or 8-bit colour without "
            "alpha is wanted");
}

} // namespace
} // namespace velmorn::tool
