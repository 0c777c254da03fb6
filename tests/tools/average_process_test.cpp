// `velmorn average`, run as a process.
#include <gmock/gmock.h>

#include <opencv2/imgcodecs.hpp>

#include "support/temp_dir.h"
#include "tools/process.h"

namespace velmorn::tool {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

class AverageProcess : public TempDirTest {
 protected:
  ProcessResult run(const std::vector<std::string>& arguments) {
    std::vector<std::string> words = {"average", "-o", "mean.png"};
    words.insert(words.end(), arguments.begin(), arguments.end());
    return runProcess(VELMORN_TOOL, words, dir());
  }

  void expectFailure(const std::vector<std::string>& arguments, const std::string& message) {
    writeFile(dir() / "mean.png", "as it was");
    const ProcessResult result = run(arguments);
    EXPECT_EQ(result.status, 1) << message;
    EXPECT_EQ(result.out, "");
    EXPECT_THAT(lastLine(result.err), StartsWith("velmorn: " + message));
    EXPECT_EQ(readFile(dir() / "mean.png"), "as it was");
  }

  void writeImage(const std::string& name, const cv::Mat& image) {
    ASSERT_TRUE(cv::imwrite((dir() / name).string(), image));
  }

  void writeBurst() {
    const std::uint16_t first[] = {1000, 0, 1002};
    for (int i = 0; i < 3; ++i) {
      cv::Mat depth(10, 20, CV_16UC1, cv::Scalar(first[i]));
      depth.row(0) = 0;
      writeImage("d" + std::to_string(i) + ".png", depth);
    }
  }
};

TEST_F(AverageProcess, AveragesDepthImages) {
  writeBurst();
  const ProcessResult result = run({"d*.png"});
  ASSERT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(result.err, "[1/3] d0.png: read\n[2/3] d1.png: read\n[3/3] d2.png: read\n");
  EXPECT_EQ(result.out,
            "images      3, 20x10 16-bit depth\n"
            "unmeasured  10.00 % of the pixels, in no image\n"
            "written to  mean.png\n");
  const cv::Mat mean = cv::imread((dir() / "mean.png").string(), cv::IMREAD_UNCHANGED);
  ASSERT_EQ(mean.type(), CV_16UC1);
  EXPECT_EQ(mean.at<std::uint16_t>(0, 7), 0);
  EXPECT_EQ(mean.at<std::uint16_t>(1, 7), 1001);
}

TEST_F(AverageProcess, AveragesColourImagesIntoATiff) {
  writeImage("a.png", cv::Mat(4, 5, CV_8UC3, cv::Scalar(10, 0, 30)));
  writeImage("b.png", cv::Mat(4, 5, CV_8UC3, cv::Scalar(11, 0, 32)));
  const ProcessResult result =
      runProcess(VELMORN_TOOL, {"average", "-o", "mean.TIFF", "a.png", "b.png"}, dir());
  ASSERT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(result.out, "images      2, 5x4 8-bit colour\nwritten to  mean.TIFF\n");
  const cv::Mat mean = cv::imread((dir() / "mean.TIFF").string(), cv::IMREAD_UNCHANGED);
  ASSERT_EQ(mean.type(), CV_8UC3);
  EXPECT_EQ(mean.at<cv::Vec3b>(3, 4), cv::Vec3b(10, 0, 31));
}

TEST_F(AverageProcess, CopiesASingleImage) {
  writeImage("a.png", cv::Mat(4, 5, CV_8UC1, cv::Scalar(77)));
  ASSERT_EQ(run({"a.png"}).status, 0);
  EXPECT_EQ(cv::imread((dir() / "mean.png").string(), cv::IMREAD_UNCHANGED).at<std::uint8_t>(0),
            77);
}

TEST_F(AverageProcess, SaysWhichImageIsWrong) {
  writeBurst();
  writeImage("d1.png", cv::Mat(10, 20, CV_8UC1, cv::Scalar(1)));
  expectFailure({"d*.png"}, "d1.png is 20x10 8-bit grey, but d0.png is 20x10 16-bit grey");
  writeImage("d1.png", cv::Mat(10, 21, CV_16UC1, cv::Scalar(1)));
  expectFailure({"d*.png"}, "d1.png is 21x10 16-bit grey, but d0.png is 20x10 16-bit grey");
  writeFile(dir() / "d1.png", readFile(dir() / "d0.png").substr(0, 60));
  expectFailure({"d*.png"}, "d1.png: not readable as an image");
  writeFile(dir() / "d1.png", "");
  expectFailure({"d*.png"}, "d1.png: not readable as an image");
  expectFailure({"d0.png", "gone.png"}, "no such file: gone.png");
  expectFailure({"gone*.png"}, "no file matches gone*.png");
  writeImage("alpha.png", cv::Mat(10, 20, CV_8UC4, cv::Scalar(1, 1, 1, 1)));
  expectFailure({"alpha.png"}, "alpha.png is 8-bit colour with alpha; ");
}

TEST_F(AverageProcess, RefusesItsOwnOutputAsAnImage) {
  writeBurst();
  const ProcessResult result =
      runProcess(VELMORN_TOOL, {"average", "-o", "./d2.png", "d*.png"}, dir());
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.err, "velmorn: ./d2.png is the file to write and one of the images\n");
}

TEST_F(AverageProcess, WarnsWhereTheSumsAreRounded) {
  writeBurst();
  const std::vector<std::string> many(257, "d0.png");
  EXPECT_THAT(run(many).err,
              HasSubstr("warning: the mean of more than 256 depth images is rounded"));
}

TEST_F(AverageProcess, TellsWrongUsage) {
  writeBurst();
  EXPECT_EQ(runProcess(VELMORN_TOOL, {"average", "d0.png"}, dir()).status, 2);
  EXPECT_EQ(runProcess(VELMORN_TOOL, {"average", "-o", "mean.png"}, dir()).status, 2);
  EXPECT_THAT(runProcess(VELMORN_TOOL, {"average", "-o", "mean.jpg", "d0.png"}, dir()).err,
              HasSubstr("has to be named .png, .tif or .tiff"));
  EXPECT_EQ(runProcess(VELMORN_TOOL, {"average", "-o", "no/mean.png", "d0.png"}, dir()).status, 1);
  EXPECT_THAT(runProcess(VELMORN_TOOL, {"average", "--help"}, dir()).out,
              HasSubstr("Example:\n  velmorn average"));
}

} // namespace
} // namespace velmorn::tool
