// `velmorn merge`, run as a process.
#include <gmock/gmock.h>

#include <opencv2/imgcodecs.hpp>

#include "support/temp_dir.h"
#include "tools/aerial_builder.h"
#include "tools/merge_builder.h"
#include "tools/process.h"

namespace velmorn::tool {
namespace {

using nlohmann::json;
using testing::HasSubstr;
using testing::StartsWith;

class MergeProcess : public TempDirTest {
 protected:
  MergeProcess() { writeTwoCameraMergeFiles(dir()); }

  ProcessResult run(const json& job, const std::vector<std::string>& further = {}) {
    writeFile(dir() / "job.json", job.dump());
    std::vector<std::string> arguments = {"merge", "job.json"};
    arguments.insert(arguments.end(), further.begin(), further.end());
    return runProcess(VELMORN_TOOL, arguments, dir());
  }

  std::vector<CloudPoint> cloud(const std::string& name = "merged.ply") {
    return readMergedCloud(dir() / name);
  }

  // The run has to end with the message and leave both files alone, and nothing beside them.
  void expectFailure(const json& job, const std::string& message) {
    writeFile(dir() / "merged.ply", "as it was");
    writeFile(dir() / "seams.json", "as it was, too");
    const ProcessResult result = run(job, {"--seams", "seams.json"});
    EXPECT_EQ(result.status, 1) << message;
    EXPECT_EQ(result.out, "");
    EXPECT_THAT(lastLine(result.err), StartsWith("velmorn: " + message));
    EXPECT_EQ(readFile(dir() / "merged.ply"), "as it was");
    EXPECT_EQ(readFile(dir() / "seams.json"), "as it was, too");
    for (const auto& entry : std::filesystem::directory_iterator(dir())) {
      EXPECT_NE(entry.path().extension(), ".tmp");
    }
  }

  void writeImage(const std::string& name, const cv::Mat& image) {
    ASSERT_TRUE(cv::imwrite((dir() / name).string(), image));
  }
};

TEST_F(MergeProcess, WritesTheCloud) {
  const ProcessResult result = run(twoCameraMergeJob());
  ASSERT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(result.err, "[1/2] a a.png: 5x1, 5 points\n[2/2] b b.png: 5x1, 5 points\n");
  EXPECT_EQ(result.out,
            "points      10\n"
            "  of \"a\": 5\n"
            "  of \"b\": 5\n"
            "frame       base\n"
            "written to  merged.ply\n"
            "\n"
            "seam         points  share  median  90 %\n"
            "a     b  no overlap      -       -     -\n");
  EXPECT_THAT(readFile(dir() / "merged.ply"),
              StartsWith("ply\nformat binary_little_endian 1.0\ncomment frame base\n"
                         "comment camera 0 a\ncomment camera 1 b\n"));
  const std::vector<CloudPoint> points = cloud();
  ASSERT_EQ(points.size(), 10U);
  EXPECT_EQ(points[0].position, cv::Vec3f(5, 4, 107));
  EXPECT_EQ(points[4].position, cv::Vec3f(5, 8, 107));
  EXPECT_EQ(points[9].position, cv::Vec3f(5, 8.2F, 57));
  EXPECT_EQ(points[4].camera, 0);
  EXPECT_EQ(points[9].camera, 1);
  EXPECT_EQ(points[0].colour, cameraColour(0));
  EXPECT_EQ(points[9].colour, cameraColour(1));
}

TEST_F(MergeProcess, ColoursOfOneCameraAndGreyOfAnother) {
  json job = twoCameraMergeJob();
  job["cameras"][0]["color"] = "c.png";
  writeImage("c.png", cv::Mat(1, 5, CV_8UC3, cv::Scalar(10, 20, 30)));
  ASSERT_EQ(run(job).status, 0);
  EXPECT_EQ(cloud()[0].colour, cv::Vec3b(10, 20, 30));
  EXPECT_EQ(cloud()[5].colour, cameraColour(1));
  job["cameras"][1]["color"] = "g.png";
  writeImage("g.png", cv::Mat(1, 5, CV_8UC1, cv::Scalar(77)));
  ASSERT_EQ(run(job, {"-o", "grey.ply"}).status, 0);
  EXPECT_EQ(cloud("grey.ply")[5].colour, cv::Vec3b(77, 77, 77));
}

// planeFromCam of "b": its axes, 60 up.
TEST_F(MergeProcess, InTheFrameOfAPlane) {
  const json rows = {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 60}, {0, 0, 0, 1}};
  writeFile(dir() / "plane.json", json{{"direction", "planeFromCam"}, {"extrinsic", rows}}.dump());
  json job = twoCameraMergeJob();
  job["frame"] = "plane.json";
  job["frame_camera"] = "b";
  const ProcessResult result = run(job);
  ASSERT_EQ(result.status, 0) << result.err;
  EXPECT_THAT(result.out, HasSubstr("frame       plane\n"));
  EXPECT_LT(cv::norm(cloud()[0].position - cv::Vec3f(-3.2F, 0, 160)), 1e-5);
  EXPECT_LT(cv::norm(cloud()[9].position - cv::Vec3f(1, 0, 110)), 1e-5);
}

TEST_F(MergeProcess, ScalesAndCutsDepths) {
  json job = twoCameraMergeJob();
  job["depth_unit"] = 2;
  job["range"] = {150, 200};
  const ProcessResult result = run(job);
  ASSERT_EQ(result.status, 0) << result.err;
  EXPECT_THAT(result.err, HasSubstr("warning: camera \"b\": b.png has no usable depth sample\n"));
  ASSERT_EQ(cloud().size(), 5U);
  EXPECT_EQ(cloud()[0].position, cv::Vec3f(5, 2, 207));
}

// Base y: 4..8 of "a" at z = 107 and 6.2 to 8.2 of "b" at z = 57. Voxels of 10 take each camera's
// points together, the option goes before the job's key.
TEST_F(MergeProcess, ThinsToVoxels) {
  json job = twoCameraMergeJob();
  job["voxel"] = 1e-9;
  ASSERT_EQ(run(job).status, 0);
  EXPECT_EQ(cloud().size(), 10U);
  const ProcessResult result = run(job, {"--voxel", "10"});
  ASSERT_EQ(result.status, 0) << result.err;
  EXPECT_THAT(result.out, StartsWith("points      10\n  of \"a\": 5\n  of \"b\": 5\n"
                                     "thinned to  2, voxels of 10\n"));
  std::vector<CloudPoint> points = cloud();
  ASSERT_EQ(points.size(), 2U);
  if (points[0].camera == 1) std::swap(points[0], points[1]);
  EXPECT_LT(cv::norm(points[0].position - cv::Vec3f(5, 6, 107)), 1e-5);
  EXPECT_LT(cv::norm(points[1].position - cv::Vec3f(5, 7.2F, 57)), 1e-5);
  EXPECT_EQ(points[1].colour, cameraColour(1));
}

TEST_F(MergeProcess, OneCameraHasNoSeams) {
  json job = twoCameraMergeJob();
  job["cameras"].erase(1);
  job.erase("result");
  const ProcessResult result = run(job, {"--seams", "seams.json"});
  ASSERT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(result.out,
            "points      5\n"
            "  of \"a\": 5\n"
            "frame       base\n"
            "written to  merged.ply\n"
            "seams to    seams.json\n");
  EXPECT_EQ(json::parse(readFile(dir() / "seams.json"))["seams"], json::array());
}

TEST_F(MergeProcess, WarnsAboutTheImagesSize) {
  writeImage("b.png", cv::Mat(2, 5, CV_16UC1, cv::Scalar(50)));
  const ProcessResult result = run(twoCameraMergeJob());
  EXPECT_EQ(result.status, 0);
  EXPECT_THAT(result.err, HasSubstr("warning: the image is 5x2, but row.yml is for 5x1"));
}

TEST_F(MergeProcess, SaysWhichImageIsWrong) {
  json job = twoCameraMergeJob();
  const std::string whole = readFile(dir() / "a.png");
  writeImage("b.png", cv::Mat(1, 5, CV_8UC1, cv::Scalar(1)));
  expectFailure(job, "camera \"b\": b.png: not a depth image, which has one channel of 16 bits");
  writeFile(dir() / "b.png", whole.substr(0, whole.size() - 20));
  expectFailure(job, "camera \"b\": b.png: not readable as an image");
  std::filesystem::remove(dir() / "b.png");
  expectFailure(job, "camera \"b\": no such file: b.png");
  job["cameras"][0]["color"] = "c.png";
  writeImage("c.png", cv::Mat(1, 6, CV_8UC3, cv::Scalar(1, 1, 1)));
  expectFailure(job, "camera \"a\": c.png is 6x1, but the depth image is 5x1");
}

TEST_F(MergeProcess, FailsWithoutAnyPoint) {
  writeImage("a.png", depthRow(0));
  writeImage("b.png", depthRow(65535));
  expectFailure(twoCameraMergeJob(), "no camera of job.json has a point");
}

TEST_F(MergeProcess, SaysWhatIsWrongWithTheJob) {
  json job = twoCameraMergeJob();
  job["cameras"][1]["id"] = "c";
  expectFailure(job, "job.json: camera \"c\" has no place in result.json");
  expectFailure(json::array(), "job.json: an object { } is wanted");
}

TEST_F(MergeProcess, FailsBeforeTheWorkWhereNothingCanBeWritten) {
  const ProcessResult result = run(twoCameraMergeJob(), {"-o", "no/where.ply"});
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(result.err, StartsWith("velmorn: cannot write no/where.ply: "));
  const ProcessResult seams = run(twoCameraMergeJob(), {"--seams", "no/where.json"});
  EXPECT_EQ(seams.status, 1);
  EXPECT_THAT(seams.err, StartsWith("velmorn: cannot write no/where.json: "));
  EXPECT_FALSE(std::filesystem::exists(dir() / "merged.ply"));
}

TEST_F(MergeProcess, TellsWrongUsage) {
  const json job = twoCameraMergeJob();
  for (const std::vector<std::string>& words : std::vector<std::vector<std::string>>{
           {"-o", "a.pcd"}, {"--voxel", "0"}, {"--voxel", "x"}, {"--seams", "s.txt"}}) {
    EXPECT_EQ(run(job, words).status, 2) << words[0] << ' ' << words[1];
  }
  EXPECT_EQ(runProcess(VELMORN_TOOL, {"merge"}, dir()).status, 2);
  EXPECT_EQ(runProcess(VELMORN_TOOL, {"merge", "gone.json"}, dir()).status, 2);
  const ProcessResult help = runProcess(VELMORN_TOOL, {"merge", "--help"}, dir());
  EXPECT_EQ(help.status, 0);
  EXPECT_THAT(help.out, HasSubstr("Example:\n  velmorn merge merge.json -o merged.ply"));
}

} // namespace
} // namespace velmorn::tool
