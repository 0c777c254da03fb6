// `velmorn report` as users run it.
#include <gmock/gmock.h>

#include <opencv2/imgcodecs.hpp>

#include "support/temp_dir.h"
#include "tools/cloud_files.h"
#include "tools/process.h"
#include "tools/report_rig.h"

namespace velmorn::tool {
namespace {

using nlohmann::json;
using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

class ReportProcess : public TempDirTest {
 protected:
  ReportProcess() { writeFile("result.json", result_.dump()); }

  static ProcessResult run(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "report");
    return runProcess(VELMORN_TOOL, arguments, std::filesystem::current_path());
  }

  static void expectFailure(const std::vector<std::string>& arguments, const std::string& reason) {
    writeFile("report.html", "as it was");
    const ProcessResult result = run(arguments);
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_THAT(lastLine(result.err), StartsWith("velmorn: " + reason));
    EXPECT_EQ(readFile("report.html"), "as it was");
  }

  SyntheticRig rig_ = reportRig();
  json result_ = reportResult(rig_);
};

TEST_F(ReportProcess, WritesOnePage) {
  writeReportImages(rig_, dir());
  writeFile("merged.ply", reportCloud(rig_, 20));
  cv::imwrite("aerial.png", cv::Mat(30, 40, CV_8UC3, cv::Scalar(9, 9, 9)));
  const ProcessResult result = run({"result.json", "-o", "page.html", "--cloud", "merged.ply",
                                    "--aerial", "aerial.png", "--title", "Line 4"});
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(result.out, "cameras     4 of 4 with a place\npictures    24\nwritten to  page.html\n");
  EXPECT_THAT(result.err, AllOf(StartsWith("[ 1/24] cam1 cam1-1.png: picture taken in\n"),
                                EndsWith("[24/24] cam4 cam4-6.png: picture taken in\n")));
  EXPECT_THAT(readFile("page.html"),
              AllOf(HasSubstr("<h1>Line 4</h1>"), HasSubstr("<td class=\"number\">0.3702</td>"),
                    HasSubstr("The merged cloud has 1600 points. "), HasSubstr("id=\"aerial\""),
                    HasSubstr("Shot 3, <bdi>cam2-3.png</bdi>: no board found")));
}

TEST_F(ReportProcess, WritesTheSamePageAgain) {
  EXPECT_EQ(run({"result.json", "-o", "a.html"}).status, 0);
  EXPECT_EQ(run({"result.json", "-o", "b.html"}).status, 0);
  EXPECT_EQ(readFile("a.html"), readFile("b.html"));
}

TEST_F(ReportProcess, NamesImagesThatAreGone) {
  const ProcessResult result = run({"result.json"});
  EXPECT_EQ(result.status, 0);
  EXPECT_THAT(result.out, HasSubstr("pictures    0\n"));
  EXPECT_THAT(result.err, HasSubstr("cam1 cam1-1.png: picture missing: cam1-1.png"));
  EXPECT_THAT(readFile("report.html"), HasSubstr("Picture missing: cam1-1.png"));
}

TEST_F(ReportProcess, TakesFilesWithoutShots) {
  for (json& camera : result_["cameras"])
    for (const char* key : {"shots", "intrinsics", "imageSize"}) camera.erase(key);
  writeFile("result.json", result_.dump());
  EXPECT_EQ(run({"result.json"}).status, 0);
  EXPECT_THAT(readFile("report.html"), AllOf(HasSubstr("says nothing about the single shots"),
                                             HasSubstr("<td class=\"number\">0.3702</td>")));
}

TEST_F(ReportProcess, ShowsARunThatFailed) {
  result_["error"] = "camera \"cam4\" could not be linked";
  for (const char* key : {"baseFromCam", "parent", "residual"})
    result_["cameras"][3][key] = nullptr;
  writeFile("result-failed.json", result_.dump());
  const ProcessResult result = run({"result-failed.json"});
  EXPECT_EQ(result.status, 0);
  EXPECT_THAT(result.out, StartsWith("cameras     3 of 4 with a place\n"));
  EXPECT_THAT(
      readFile("report.html"),
      AllOf(HasSubstr("camera &quot;cam4&quot; could not be linked"), HasSubstr(">not linked<")));
}

TEST_F(ReportProcess, ThinsALargeCloud) {
  writeFile("merged.ply", reportCloud(rig_, 280)); // 313600 points
  EXPECT_EQ(run({"result.json", "--cloud", "merged.ply"}).status, 0);
  EXPECT_THAT(readFile("report.html"), HasSubstr("has 313600 points, of which 300000 are shown."));
}

TEST_F(ReportProcess, SaysWhatIsWrongWithTheInputs) {
  writeFile("bad.ply", with(reportCloud(rig_, 3), "vertex 36", "vertex 999999"));
  expectFailure({"result.json", "--cloud", "bad.ply"}, "bad.ply: cut off: ");
  writeFile("bad.png", "text");
  expectFailure({"result.json", "--aerial", "bad.png"}, "bad.png: not readable as an image");
  writeFile("bad.json", result_.dump().substr(0, 500));
  expectFailure({"bad.json"}, "bad.json: not valid JSON: ");
  result_["cameras"][1]["baseFromCam"][0][3] = 1e12;
  writeFile("far.json", result_.dump());
  expectFailure({"far.json"}, "far.json: camera \"cam2\" is too far from the base to be drawn");
}

TEST_F(ReportProcess, FailsBeforeTheWorkWhereNothingCanBeWritten) {
  const ProcessResult result = run({"result.json", "-o", "no/where.html"});
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(result.err, StartsWith("velmorn: cannot write no/where.html: "));
}

TEST_F(ReportProcess, TellsWrongUsage) {
  EXPECT_EQ(run({}).status, 2);
  EXPECT_EQ(run({"gone.json"}).status, 2);
  EXPECT_EQ(run({"result.json", "-o", "page.pdf"}).status, 2);
  EXPECT_EQ(run({"result.json", "--cloud", "result.json"}).status, 2);
  EXPECT_EQ(run({"result.json", "--aerial", "gone.png"}).status, 2);
  const ProcessResult help = run({"--help"});
  EXPECT_EQ(help.status, 0);
  EXPECT_THAT(help.out, HasSubstr("Example:\n  velmorn report result.json -o report.html"));
}

} // namespace
} // namespace velmorn::tool
