// The page as a whole: complete without scripts, and closed against text from outside.
#include "velmorn/report_page.h"

#include <gmock/gmock.h>

#include "tools/record_sample.h"
#include "velmorn/embedded_text.h"

namespace velmorn::tool {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

ReportPage pageOf(const StitchRecord& record) {
  ReportPage page;
  page.title = "Line 4 & 5";
  page.resultName = "result.json";
  page.topView = "<svg class=\"top-view\"></svg>";
  page.data = {{"cameras", nlohmann::json::array()}};
  page.pictures.resize(record.cameras.size());
  return page;
}

std::size_t count(const std::string& text, const std::string& part) {
  std::size_t number = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
    ++number;
  return number;
}

// Without the scripts at the page's end.
std::string shown(const std::string& html) { return html.substr(0, html.find("<script>")); }

TEST(ReportPage, HasEverythingInItsPlace) {
  const StitchRecord record = twoCameraRecord();
  const std::string html = reportHtml(record, pageOf(record));
  EXPECT_THAT(shown(html),
              AllOf(HasSubstr("<html lang=\"en\">"), HasSubstr("<title>Line 4 &amp; 5</title>"),
                    HasSubstr("<h1>Line 4 &amp; 5</h1>"), HasSubstr("<svg class=\"top-view\">"),
                    HasSubstr("<noscript>"), HasSubstr("<svg class=\"tree\""),
                    HasSubstr("id=\"camera-2\""), HasSubstr("board 3x4, square 10"),
                    HasSubstr("base <bdi>left</bdi>"), HasSubstr("Permission is hereby granted"),
                    Not(HasSubstr("id=\"aerial\"")), Not(HasSubstr("The run failed"))));
  EXPECT_EQ(count(html, "<script"), 6U);
}

TEST(ReportPage, ShowsTheViewFromAbove) {
  const StitchRecord record = twoCameraRecord();
  ReportPage page = pageOf(record);
  page.aerialName = "a<b>.png";
  page.aerialAddress = "data:image/png;base64,AAAA";
  EXPECT_THAT(shown(reportHtml(record, page)),
              AllOf(HasSubstr("src=\"data:image/png;base64,AAAA\""), HasSubstr("a&lt;b&gt;.png"),
                    HasSubstr("<a href=\"#aerial\">")));
}

TEST(ReportPage, SaysThatARunFailed) {
  StitchRecord record = twoCameraRecord();
  record.hasDataCodes = true;
  record.base = "";
  record.error = "camera <left> could not be linked";
  record.cameras = {unlinkedCamera("left"), unlinkedCamera("right")};
  ReportPage page = pageOf(record);
  page.topView = "";
  EXPECT_THAT(
      shown(reportHtml(record, page)),
      AllOf(HasSubstr("camera &lt;left&gt; could not be linked"), HasSubstr("no base"),
            HasSubstr("No camera has a place"), HasSubstr("board with data codes, square 10")));
}

TEST(ReportPage, KeepsTextFromOutsideAsText) {
  StitchRecord record = twoCameraRecord();
  record.base = record.cameras[0].id = record.cameras[1].parent = record.error = kHostileId;
  ReportPage page = pageOf(record);
  page.title = page.resultName = page.aerialName = kHostileId;
  page.data["cameras"].push_back(kHostileId);
  const std::string html = reportHtml(record, page);
  EXPECT_THAT(shown(html), Not(HasSubstr("<img src=x")));
  EXPECT_EQ(count(html, "</script"), 6U);
}

// Their digests; whether they are right is for a browser to say.
TEST(ReportPage, AllowsItsOwnScriptsAlone) {
  const StitchRecord record = twoCameraRecord();
  const std::string html = reportHtml(record, pageOf(record));
  EXPECT_THAT(shown(html), AllOf(HasSubstr("default-src 'none'"), Not(HasSubstr("unsafe-")),
                                 Not(HasSubstr("https:; "))));
  EXPECT_EQ(count(html, "'sha256-"), 6U);
}

TEST(EmbeddedText, IsThere) {
  for (const EmbeddedText& text : {reportStyle(), reportSceneScript(), reportViewScript(),
                                   reportPageScript(), threeScript(), orbitScript()}) {
    EXPECT_GT(text.text.size(), 1000U);
    EXPECT_EQ(text.sha256.size(), 64U);
  }
  EXPECT_THAT(std::string(threeLicence().text), HasSubstr("three.js authors"));
}

} // namespace
} // namespace velmorn::tool
