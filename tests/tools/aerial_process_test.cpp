// `velmorn aerial`, run as a process.
#include <gmock/gmock.h>

#include <algorithm>
#include <opencv2/imgcodecs.hpp>

#include "support/temp_dir.h"
#include "tools/aerial_builder.h"
#include "tools/cloud_files.h"
#include "tools/process.h"
#include "tools/rig_builder.h"

namespace velmorn::tool {
namespace {

using nlohmann::json;
using testing::HasSubstr;
using testing::StartsWith;

class AerialProcess : public TempDirTest {
 protected:
  AerialProcess() { writeTwoCameraJobFiles(dir()); }

  ProcessResult run(const json& job, const std::vector<std::string>& further = {}) {
    writeFile(dir() / "job.json", job.dump());
    std::vector<std::string> arguments = {"aerial", "job.json"};
    arguments.insert(arguments.end(), further.begin(), further.end());
    return runProcess(VELMORN_TOOL, arguments, dir());
  }

  // The run has to end with the message and leave both files alone.
  void expectFailure(const json& job, const std::string& message) {
    writeFile(dir() / "aerial.png", "as it was");
    writeFile(dir() / "aerial-legend.png", "as it was, too");
    const ProcessResult result = run(job);
    EXPECT_EQ(result.status, 1) << message;
    EXPECT_EQ(result.out, "");
    EXPECT_THAT(lastLine(result.err), StartsWith("velmorn: " + message));
    EXPECT_EQ(readFile(dir() / "aerial.png"), "as it was");
    EXPECT_EQ(readFile(dir() / "aerial-legend.png"), "as it was, too");
  }

  void writeImage(const std::string& name, const cv::Mat& image) {
    ASSERT_TRUE(cv::imwrite((dir() / name).string(), image));
  }

  cv::Mat picture(const std::string& name) {
    return cv::imread((dir() / name).string(), cv::IMREAD_UNCHANGED);
  }
};

TEST_F(AerialProcess, WritesThePictureAndItsLegend) {
  const ProcessResult result = run(twoCameraJob());
  ASSERT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(result.err, "[1/2] a a.png: 5x1\n[2/2] b b.png: 5x1\n");
  EXPECT_EQ(result.out,
            "grid        4 x 2 cells of 1\n"
            "covered     3 cells, 37.50 %\n"
            "  by \"a\": 1 cell, 12.50 %\n"
            "  by \"b\": 2 cells, 25.00 %\n"
            "depths      50 to 100\n"
            "written to  aerial.png\n"
            "legend      aerial-legend.png\n");
  const cv::Mat view = picture("aerial.png");
  ASSERT_EQ(view.type(), CV_8UC3);
  ASSERT_EQ(view.size(), cv::Size(4, 2));
  EXPECT_EQ(view.at<cv::Vec3b>(0, 0), cv::Vec3b(255, 0, 0)); // the farthest is blue
  EXPECT_EQ(view.at<cv::Vec3b>(0, 2), cv::Vec3b(170, 170, 85));
  EXPECT_EQ(view.at<cv::Vec3b>(1, 0), cv::Vec3b(0, 0, 0));
  const cv::Mat legend = picture("aerial-legend.png");
  EXPECT_GT(legend.cols, 900); // 225 pixels a cell
  EXPECT_GT(legend.rows, 450);
  EXPECT_EQ(legend.at<cv::Vec3b>(0, 0), cv::Vec3b(255, 255, 255));
}

TEST_F(AerialProcess, PaintsColours) {
  json job = twoCameraJob();
  job["cameras"][0]["color"] = "ca.png";
  job["cameras"][1]["color"] = "cb.png";
  writeImage("ca.png", cv::Mat(1, 5, CV_8UC3, cv::Scalar(10, 20, 30)));
  writeImage("cb.png", cv::Mat(1, 5, CV_8UC1, cv::Scalar(77)));
  ASSERT_EQ(run(job, {"-o", "colours.png"}).status, 0);
  const cv::Mat view = picture("colours.png");
  EXPECT_EQ(view.at<cv::Vec3b>(0, 0), cv::Vec3b(10, 20, 30));
  EXPECT_EQ(view.at<cv::Vec3b>(0, 1), cv::Vec3b(77, 77, 77));
  EXPECT_FALSE(picture("colours-legend.png").empty());
}

TEST_F(AerialProcess, WarnsAndWritesABlackPicture) {
  json job = twoCameraJob();
  job["region"] = {100, 100, 103, 101};
  const ProcessResult result = run(job);
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(lastLine(result.err),
            "velmorn: warning: no depth sample falls into the region, so the picture is black");
  EXPECT_THAT(result.out, HasSubstr("covered     0 cells, 0.00 %\n"));
  EXPECT_EQ(cv::norm(picture("aerial.png"), cv::NORM_INF), 0);
}

TEST_F(AerialProcess, WarnsAboutLensDistortion) {
  json job = twoCameraJob();
  writeFile(dir() / "lens.yml", cameraYaml("-0.3, 0., 0., 0.", // 640x480, f = 500
                                           "500., 0., 320., 0., 500., 240., 0., 0., 1."));
  writeImage("a.png", cv::Mat(480, 640, CV_16UC1, cv::Scalar(100)));
  job["cameras"][0]["intrinsics"] = "lens.yml";
  const ProcessResult result = run(job);
  EXPECT_EQ(result.status, 0);
  EXPECT_THAT(result.err, HasSubstr("velmorn: warning: camera \"a\": the lens distortion of "
                                    "lens.yml moves pixels by up to 76.8 pixels and is not "));
  writeFile(dir() / "lens.yml", cameraYaml("0., 0., 0., 0.", // and now for another size
                                           "500., 0., 320., 0., 500., 240., 0., 0., 1."));
  writeImage("a.png", cv::Mat(48, 64, CV_16UC1, cv::Scalar(100)));
  EXPECT_THAT(run(job).err, HasSubstr("warning: the image is 64x48, but lens.yml is for 640x480"));
}

TEST_F(AerialProcess, SaysWhichImageIsWrong) {
  const json job = twoCameraJob();
  writeImage("b.png", cv::Mat(1, 5, CV_8UC1, cv::Scalar(1)));
  expectFailure(job, "camera \"b\": b.png: not a depth image, which has one channel of 16 bits");
  writeFile(dir() / "b.png", "");
  expectFailure(job, "camera \"b\": b.png: not readable as an image");
  const std::string whole = readFile(dir() / "a.png");
  writeFile(dir() / "b.png", whole.substr(0, whole.size() - 20));
  expectFailure(job, "camera \"b\": b.png: not readable as an image");
  std::filesystem::remove(dir() / "b.png");
  expectFailure(job, "camera \"b\": no such file: b.png");
}

TEST_F(AerialProcess, SaysWhichColourImageIsWrong) {
  json job = twoCameraJob();
  for (json& camera : job["cameras"]) camera["color"] = "c.png";
  writeImage("c.png", cv::Mat(1, 6, CV_8UC3, cv::Scalar(1, 1, 1)));
  expectFailure(job, "camera \"a\": c.png is 6x1, but the depth image is 5x1");
  writeImage("c.png", cv::Mat(1, 5, CV_8UC4, cv::Scalar(1, 1, 1, 1)));
  expectFailure(job,
                "camera \"a\": c.png: not a colour image of 8 bits without alpha, but 8-bit "
                "colour with alpha");
  writeImage("c.png", cv::Mat(1, 5, CV_16UC3, cv::Scalar(1, 1, 1)));
  expectFailure(job, "camera \"a\": c.png: not a colour image of 8 bits");
}

TEST_F(AerialProcess, SaysWhatIsWrongWithTheJob) {
  json job = twoCameraJob();
  job["cameras"][1]["id"] = "c";
  expectFailure(job, "job.json: camera \"c\" is not in result.json");
  job = twoCameraJob();
  job["resolution"] = 1e-4;
  expectFailure(job, "job.json: the grid would have 30001 x 10001 cells, ");
  expectFailure(json::array(), "job.json: an object { } is wanted");
}

TEST_F(AerialProcess, FailsBeforeTheWorkWhereNothingCanBeWritten) {
  const ProcessResult result = run(twoCameraJob(), {"-o", "no/where.png"});
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(result.err, StartsWith("velmorn: cannot write no/where.png: "));
  std::filesystem::create_directory(dir() / "x-legend.png");
  EXPECT_THAT(run(twoCameraJob(), {"-o", "x.png"}).err,
              StartsWith("velmorn: cannot write x-legend.png: "));
  EXPECT_FALSE(std::filesystem::exists(dir() / "x.png"));
}

TEST_F(AerialProcess, TellsWrongUsage) {
  EXPECT_EQ(run(twoCameraJob(), {"-o", "a.jpg"}).status, 2);
  EXPECT_EQ(runProcess(VELMORN_TOOL, {"aerial"}, dir()).status, 2);
  EXPECT_EQ(runProcess(VELMORN_TOOL, {"aerial", "gone.json"}, dir()).status, 2);
  const ProcessResult help = runProcess(VELMORN_TOOL, {"aerial", "--help"}, dir());
  EXPECT_EQ(help.status, 0);
  EXPECT_THAT(help.out, HasSubstr("Example:\n  velmorn aerial job.json"));
}

} // namespace
} // namespace velmorn::tool
