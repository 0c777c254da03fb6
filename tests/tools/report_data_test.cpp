// The data of the three-dimensional view.
#include "velmorn/report_data.h"

#include <gmock/gmock.h>

#include "tools/record_sample.h"

namespace velmorn::tool {
namespace {

using nlohmann::ordered_json;

ordered_json dataOf(const StitchRecord& record, const ColouredCloud& cloud) {
  const ReportModel model = reportModel(record);
  return reportData(record, model, reportFrame(model, cloud), cloud);
}

ColouredCloud cloudOfTwo() {
  ColouredCloud cloud;
  cloud.points.emplace_back(1.F, 2.F, 3.F);
  cloud.points.emplace_back(1.F, 4.F, 3.F + 65535);
  cloud.colours.emplace_back(uchar{255}, uchar{0}, uchar{1});
  cloud.colours.emplace_back(uchar{2}, uchar{3}, uchar{4});
  cloud.cameras = {1, 7};
  cloud.cameraIds = {"other", "right"};
  cloud.read = 2;
  return cloud;
}

TEST(ReportData, HoldsTheCameras) {
  const ordered_json data = dataOf(twoCameraRecord(), {});
  ASSERT_EQ(data["cameras"].size(), 2U);
  const ordered_json& right = data["cameras"][1];
  EXPECT_EQ(right["index"], 1);
  EXPECT_EQ(right["id"], "right");
  EXPECT_EQ(right["isBase"], false);
  EXPECT_EQ(right["parent"], 0);
  EXPECT_EQ(right["baseFromCam"][0], ordered_json({1, 0, 0, 300}));
  EXPECT_EQ(right["corners"].size(), 4U);
  EXPECT_TRUE(data["cameras"][0]["parent"].is_null());
  EXPECT_TRUE(data["cloud"].is_null());
  EXPECT_EQ(data["viewFromBase"], ordered_json({{1, 0, 0}, {0, 0, -1}, {0, 1, 0}}));
  EXPECT_EQ(data["cell"], 50);
}

TEST(ReportData, NumbersShotsFromOne) {
  StitchRecord record = twoCameraRecord();
  record.cameras[0].shots = {refusedShot("no-board"), usedShot(0.1, {})};
  const ordered_json boards = dataOf(record, {})["boards"];
  ASSERT_EQ(boards.size(), 1U);
  EXPECT_EQ(boards[0]["shot"], 2);
  EXPECT_EQ(boards[0]["outline"][2], ordered_json({30, 40, 0}));
}

// Steps of 0, 2 / 65535 and 1; little endian: 0 0 0 0 0 0 and 0 0 255 255 255 255.
TEST(ReportData, PacksTheCloud) {
  const ordered_json cloud = dataOf(twoCameraRecord(), cloudOfTwo())["cloud"];
  EXPECT_EQ(cloud["count"], 2);
  EXPECT_EQ(cloud["least"], ordered_json({1, 2, 3}));
  EXPECT_EQ(cloud["step"][0], 0);
  EXPECT_EQ(cloud["step"][2], 1);
  EXPECT_EQ(cloud["positions"], "AAAAAAAAAAD/////");
  EXPECT_EQ(cloud["colours"], "/wABAgME");
  EXPECT_EQ(cloud["cameras"], "Af8="); // camera 1 of the record, and none of them
}

TEST(ReportData, LeavesOutWhatTheCloudDoesNotHave) {
  ColouredCloud cloud = cloudOfTwo();
  cloud.colours.clear();
  cloud.cameraIds.clear();
  const ordered_json data = dataOf(twoCameraRecord(), cloud)["cloud"];
  EXPECT_TRUE(data["colours"].is_null());
  EXPECT_TRUE(data["cameras"].is_null());
}

} // namespace
} // namespace velmorn::tool
