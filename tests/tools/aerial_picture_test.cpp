// The view from above as a part of the page.
#include "velmorn/aerial_picture.h"

#include <gmock/gmock.h>

#include <opencv2/imgcodecs.hpp>

#include "support/temp_dir.h"
#include "tools/expect_tool_error.h"

namespace velmorn::tool {
namespace {

using testing::StartsWith;

class AerialPicture : public TempDirTest {};

TEST_F(AerialPicture, IsAPngAddress) {
  cv::imwrite("a.png", cv::Mat(40, 50, CV_8UC3, cv::Scalar(1, 2, 3)));
  EXPECT_THAT(aerialAddress("a.png"), StartsWith("data:image/png;base64,iVBORw0KGgo"));
}

TEST_F(AerialPicture, IsAJpegWhereAPngWouldBeLarge) {
  cv::Mat noise(2000, 2000, CV_8UC3);
  cv::randu(noise, 0, 255);
  cv::imwrite("a.png", noise);
  EXPECT_THAT(aerialAddress("a.png"), StartsWith("data:image/jpeg;base64,/9j/"));
}

TEST_F(AerialPicture, HasNoMoreThanItsLongestSide) {
  cv::Mat stripes(1, 60000, CV_8UC1, cv::Scalar(0));
  cv::imwrite("a.png", stripes);
  EXPECT_LT(aerialAddress("a.png").size(), 1000U);
}

TEST_F(AerialPicture, NamesAFileThatIsNoPicture) {
  writeFile("a.png", "text");
  EXPECT_EQ(toolError([] { aerialAddress("a.png"); }), "a.png: not readable as an image");
  cv::imwrite("depth.png", cv::Mat(4, 4, CV_16UC1, cv::Scalar(5)));
  EXPECT_EQ(toolError([] { aerialAddress("depth.png"); }),
            "depth.png: has to be a picture of 8 bits, such as velmorn aerial writes");
}

} // namespace
} // namespace velmorn::tool
