// The report in a browser: it asks for nothing, runs without a complaint and shows what it has.
#include <gmock/gmock.h>

#include "support/temp_dir.h"
#include "tools/browser.h"
#include "tools/process.h"
#include "tools/record_sample.h"
#include "tools/report_rig.h"

namespace velmorn::tool {
namespace {

using nlohmann::json;
using testing::AllOf;
using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

// Of the block's top, part of which lies behind the boards; pixels.
constexpr int kLeastBlock = 60;

// Pixels of the block's colour, give or take what smoothing does.
int blockPixels(const cv::Mat& picture) {
  const cv::Scalar colour(kBlockBlue, kBlockGreen, kBlockRed);
  const cv::Scalar tolerance = cv::Scalar::all(6);
  cv::Mat isBlock;
  cv::inRange(picture, colour - tolerance, colour + tolerance, isBlock);
  return cv::countNonZero(isBlock);
}

std::size_t count(const std::string& text, const std::string& part) {
  std::size_t number = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
    ++number;
  return number;
}

class ReportBrowser : public TempDirTest {
 protected:
  static void report(const json& result, const std::vector<std::string>& options = {}) {
    writeFile("result.json", result.dump());
    std::vector<std::string> words = {"report", "result.json"};
    words.insert(words.end(), options.begin(), options.end());
    const ProcessResult run = runProcess(VELMORN_TOOL, words, std::filesystem::current_path());
    ASSERT_EQ(run.status, 0) << run.err;
  }

  SyntheticRig rig_ = reportRig();
  json result_ = reportResult(rig_);
};

TEST_F(ReportBrowser, WouldHearOfRequestsAndErrors) {
  writeFile("page.html",
            "<!DOCTYPE html><img src=\"http://example.com/a.png\">"
            "<script>missing();</script>");
  const BrowserRun run = openPage("page.html");
  EXPECT_THAT(run.console, Contains(HasSubstr("missing is not defined")));
  EXPECT_THAT(run.requests, Contains("http://example.com/a.png"));
}

TEST_F(ReportBrowser, ShowsTheRigWithoutAComplaint) {
  writeReportImages(rig_, dir());
  writeFile("merged.ply", reportCloud(rig_, 60));
  report(result_, {"--cloud", "merged.ply"});
  const BrowserRun run = openPage("report.html");
  EXPECT_THAT(run.console, IsEmpty());
  EXPECT_THAT(run.requests, IsEmpty());
  EXPECT_THAT(run.dom, AllOf(HasSubstr("data-view=\"shown\""), HasSubstr("<canvas"),
                             HasSubstr("<td class=\"number\">0.3702</td>"), HasSubstr("Side view"),
                             HasSubstr("colour by camera"), HasSubstr("class=\"name camera-3\"")));
}

TEST_F(ReportBrowser, DrawsTheCloud) {
  writeFile("merged.ply", reportCloud(rig_, 240));
  report(result_, {"--cloud", "merged.ply"});
  const cv::Size window(1200, 900);
  for (const char* scheme : {"0", "1"}) { // dark, light
    const cv::Mat picture = photographPage(
        "report.html", window, {std::string("--blink-settings=preferredColorScheme=") + scheme});
    ASSERT_EQ(picture.size(), window);
    EXPECT_GT(blockPixels(picture), kLeastBlock);
    const int corner = picture.at<cv::Vec3b>(0, 0)[0];
    EXPECT_EQ(corner < 128, *scheme == '0');
  }
  report(result_);
  EXPECT_EQ(blockPixels(photographPage("report.html", window)), 0);
}

TEST_F(ReportBrowser, ShowsTheRigFromAboveWithoutWebGl) {
  report(result_);
  const BrowserRun run = openPage("report.html", {"--disable-3d-apis"});
  EXPECT_THAT(run.dom, AllOf(HasSubstr("data-view=\"missing\""), Not(HasSubstr("<canvas")),
                             HasSubstr("the browser offers no WebGL"),
                             HasSubstr("<div id=\"top-view\" class=\"scroll\">"),
                             HasSubstr("<td class=\"number\">0.3702</td>")));
}

TEST_F(ReportBrowser, TakesNamesAsText) {
  for (json& camera : result_["cameras"]) {
    if (camera["id"] == "cam1") camera["id"] = kHostileId;
    if (camera["parent"] == "cam1") camera["parent"] = kHostileId;
    camera["shots"][0]["image"] = kHostileId + ".png";
  }
  result_["base"] = kHostileId;
  result_["error"] = kHostileId;
  report(result_, {"--title", "</title>" + kHostileId});
  const BrowserRun run = openPage("report.html");
  EXPECT_THAT(run.console, IsEmpty());
  EXPECT_THAT(run.requests, IsEmpty());
  EXPECT_THAT(run.dom, AllOf(HasSubstr("data-view=\"shown\""), Not(HasSubstr("<img"))));
  EXPECT_EQ(count(run.dom, "<script"), 6U);
}

TEST_F(ReportBrowser, NeedsNoCameraWithAPlace) {
  for (json& camera : result_["cameras"]) {
    for (const char* key : {"baseFromCam", "parent", "residual"}) camera[key] = nullptr;
    camera["isBase"] = false;
  }
  result_["base"] = nullptr;
  report(result_);
  const BrowserRun run = openPage("report.html");
  EXPECT_THAT(run.console, IsEmpty());
  EXPECT_THAT(run.requests, IsEmpty());
  EXPECT_THAT(run.dom, AllOf(HasSubstr("data-view=\"empty\""), HasSubstr("No camera has a place")));
}

} // namespace
} // namespace velmorn::tool
