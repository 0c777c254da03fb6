// The tables of the cameras and their shots.
#include "velmorn/shot_table.h"

#include <gmock/gmock.h>

#include "tools/record_sample.h"

namespace velmorn::tool {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

TEST(CameraTable, HasTheNumbersOfTheResult) {
  StitchRecord record = twoCameraRecord();
  CameraRecord& right = record.cameras[1];
  right.baseFromCam = cv::Matx44d(0, -1, 0, 3, 1, 0, 0, 4, 0, 0, 1, 12, 0, 0, 0, 1);
  right.residual = 0.25;
  right.imagesShared = 11;
  right.imagesFound = 12;
  right.imagesTotal = 14;
  const std::string row =
      "<td><bdi>left</bdi></td><td class=\"number\">11</td>"
      "<td class=\"number\">0.2500</td><td class=\"number\">12 / 14</td>"
      "<td class=\"number\">–</td><td class=\"number\">–</td>"
      "<td class=\"number\">90.000</td><td class=\"number\">3.000</td>"
      "<td class=\"number\">4.000</td><td class=\"number\">12.000</td>"
      "<td class=\"number\">13.000</td></tr>";
  EXPECT_THAT(cameraTable(record),
              AllOf(HasSubstr(row), HasSubstr("<td>(base)</td>"), HasSubstr("<caption>"),
                    HasSubstr("<a href=\"#camera-2\">")));
}

TEST(CameraTable, SaysWhichCameraIsNotLinked) {
  StitchRecord record = twoCameraRecord();
  record.cameras[1] = unlinkedCamera("lost");
  EXPECT_THAT(cameraTable(record), HasSubstr("<bdi>lost</bdi></a></th><td>not linked</td>"));
}

TEST(CameraTable, KeepsIdsAsText) {
  StitchRecord record = twoCameraRecord();
  record.cameras[0].id = record.cameras[1].parent = kHostileId;
  EXPECT_THAT(cameraTable(record), Not(HasSubstr("<img")));
}

TEST(ShotTable, SaysWhatBecameOfEveryShot) {
  StitchRecord record = twoCameraRecord();
  CameraRecord& left = record.cameras[0];
  left.shots = {usedShot(0.12345, {{1, 1}, {2, 2}}), refusedShot("no-board", "only <5> corners")};
  EXPECT_THAT(shotTable(record, left),
              AllOf(HasSubstr("<tr><th scope=\"row\">1</th><td><bdi>used.png</bdi></td>"
                              "<td>used</td><td class=\"number\">2</td>"
                              "<td class=\"number\">0.123</td></tr>"),
                    HasSubstr("<tr class=\"refused\"><th scope=\"row\">2</th>"
                              "<td><bdi>refused.png</bdi></td>"
                              "<td>refused: only &lt;5&gt; corners</td>"
                              "<td class=\"number\">–</td><td class=\"number\">–</td></tr>")));
}

TEST(ShotTable, IsEmptyWithoutShots) {
  const StitchRecord record = twoCameraRecord();
  EXPECT_EQ(shotTable(record, record.cameras[0]), "");
}

} // namespace
} // namespace velmorn::tool
