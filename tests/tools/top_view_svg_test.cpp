// The rig from above.
#include "velmorn/top_view_svg.h"

#include <gmock/gmock.h>

#include "tools/record_sample.h"

namespace velmorn::tool {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

std::string drawn(const StitchRecord& record) {
  const ReportModel model = reportModel(record);
  return topViewSvg(record, model, reportFrame(model, {}));
}

std::size_t count(const std::string& text, const std::string& part) {
  std::size_t number = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
    ++number;
  return number;
}

TEST(TopViewSvg, ShowsCamerasWithNamesBoardsAndAGrid) {
  StitchRecord record = twoCameraRecord();
  record.cameras[0].shots = {usedShot(0.1, {})};
  const std::string svg = drawn(record);
  EXPECT_THAT(svg,
              AllOf(HasSubstr(">left (base)<"), HasSubstr(">right<"), HasSubstr("class=\"grid\"")));
  EXPECT_EQ(count(svg, "class=\"frustum"), 2U);
  EXPECT_EQ(count(svg, "class=\"board"), 1U);
}

// Around the frusta, 42 deep, is a margin of 0.4 of that: 300 + 2 * (24.234 + 16.8) wide, which
// takes 760; the tips are at 41.034 and 341.034.
TEST(TopViewSvg, IsToScale) {
  EXPECT_THAT(drawn(twoCameraRecord()), AllOf(HasSubstr("x=\"81.6\" y=\"61.6\">left"),
                                              HasSubstr("x=\"678.4\" y=\"61.6\">right"),
                                              HasSubstr("viewBox=\"0 0 760.0 139.2\"")));
}

TEST(TopViewSvg, MovesANameThatWouldLieOnAnother) {
  StitchRecord record = twoCameraRecord();
  record.cameras.push_back(cameraAt("same", "left", {300, 0, 0}));
  const std::string svg = drawn(record);
  EXPECT_THAT(svg, Not(HasSubstr("y=\"" + svg.substr(svg.find(">right") - 5, 5) + ">same")));
}

TEST(TopViewSvg, KeepsIdsAsText) {
  StitchRecord record = twoCameraRecord();
  record.cameras[0].id = record.cameras[1].parent = kHostileId;
  EXPECT_THAT(drawn(record), AllOf(Not(HasSubstr("<img")), HasSubstr("&lt;/script&gt;")));
}

} // namespace
} // namespace velmorn::tool
