// Image files: whole, cut off, and of other kinds.
#include "velmorn/image_file.h"

#include <gmock/gmock.h>

#include <opencv2/imgcodecs.hpp>

#include "support/temp_dir.h"
#include "tools/expect_tool_error.h"

namespace velmorn::tool {
namespace {

class ImageFile : public TempDirTest {};

TEST_F(ImageFile, GivesAHeightMapBackBitByBit) {
  const cv::Mat heights = (cv::Mat_<float>(2, 2) << 1.5F, -1e-30F, 3e38F, 512.3F);
  for (const char* name : {"h.tif", "h.tiff"}) {
    writeFile(name, imageFileText(name, heights));
    const cv::Mat read = requireImage(name);
    ASSERT_EQ(read.type(), CV_32FC1);
    EXPECT_EQ(cv::norm(read, heights, cv::NORM_INF), 0);
  }
}

TEST_F(ImageFile, SaysWhatIsNoImage) {
  EXPECT_EQ(toolError([] { requireImage("gone.png"); }), "no such file: gone.png");
  EXPECT_EQ(toolError([] { requireImage("."); }), "not a regular file: .");
  writeFile("empty.png", "");
  EXPECT_EQ(toolError([] { requireImage("empty.png"); }), "empty.png: not readable as an image");
}

// The decoders print to the standard error themselves.
TEST_F(ImageFile, DropsTheDecodersMessages) {
  cv::Mat image(64, 64, CV_16UC1);
  cv::randu(image, 0, 65535);
  for (const char* name : {"cut.png", "cut.tif", "cut.jpg"}) {
    const std::string whole = imageFileText(name, image);
    for (const std::size_t size : {std::size_t{12}, whole.size() / 3, whole.size() * 9 / 10}) {
      writeFile(name, whole.substr(0, size));
      testing::internal::CaptureStderr();
      readImage(name, cv::IMREAD_UNCHANGED);
      EXPECT_EQ(testing::internal::GetCapturedStderr(), "") << name << ' ' << size;
    }
  }
}

TEST_F(ImageFile, NamesNeighbours) {
  EXPECT_EQ(neighbourImage("a.tiff", "-view.png"), "a-view.png");
  EXPECT_EQ(neighbourImage("some.dir/a.b.png", "-legend.png"), "some.dir/a.b-legend.png");
}

TEST_F(ImageFile, PutsPixelsIntoWords) {
  EXPECT_EQ(pixelText(cv::Mat(1, 1, CV_8UC1)), "8-bit grey");
  EXPECT_EQ(pixelText(cv::Mat(1, 1, CV_16UC3)), "16-bit colour");
  EXPECT_EQ(pixelText(cv::Mat(1, 1, CV_8UC4)), "8-bit colour with alpha");
  EXPECT_EQ(pixelText(cv::Mat(1, 1, CV_8UC2)), "8-bit with 2 channels");
}

} // namespace
} // namespace velmorn::tool
