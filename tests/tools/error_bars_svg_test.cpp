// The bars of the reprojection errors, worked out by hand.
#include "velmorn/error_bars_svg.h"

#include <gmock/gmock.h>

#include "tools/record_sample.h"

namespace velmorn::tool {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

CameraRecord camera() {
  CameraRecord camera = cameraAt("left", "", {});
  camera.shots = {usedShot(0.25, {}), refusedShot("no-board"), usedShot(0.5, {})};
  return camera;
}

TEST(ErrorScale, IsARoundNumberForAllCameras) {
  StitchRecord record = twoCameraRecord();
  EXPECT_DOUBLE_EQ(errorScale(record), 0.05);
  record.cameras[1].shots = {usedShot(0.21, {}), usedShot(0.01, {})};
  EXPECT_DOUBLE_EQ(errorScale(record), 0.5);
  record.cameras[0].shots = {usedShot(1.5, {})};
  EXPECT_DOUBLE_EQ(errorScale(record), 2);
  record.cameras[0].shots = {usedShot(1e300, {})};
  EXPECT_DOUBLE_EQ(errorScale(record), 1e6);
}

// The plot is 130 high from 12 on, 60 per shot from 48 on; a bar takes 0.62 of that.
TEST(ErrorBarsSvg, HasOneBarPerUsedShot) {
  const std::string svg = errorBarsSvg(camera(), 0.5);
  EXPECT_THAT(svg, AllOf(HasSubstr("<title>Shot 1: 0.250 px</title><rect class=\"bar\" x=\"59.4\" "
                                   "y=\"77.0\" width=\"37.2\" height=\"65.0\"/>"),
                         HasSubstr("<title>Shot 3: 0.500 px</title><rect class=\"bar\" x=\"179.4\" "
                                   "y=\"12.0\" width=\"37.2\" height=\"130.0\"/>")));
}

TEST(ErrorBarsSvg, MarksRefusedShotsByShapeAndSaysWhy) {
  EXPECT_THAT(errorBarsSvg(camera(), 0.5),
              HasSubstr("<title>Shot 2: no board found</title><path class=\"refused\""));
}

TEST(ErrorBarsSvg, EndsAtTheScale) {
  CameraRecord high = camera();
  high.shots[0].reprojectionError = 1e300;
  EXPECT_THAT(errorBarsSvg(high, 1e6), HasSubstr("y=\"12.0\" width=\"37.2\" height=\"130.0\""));
}

TEST(ErrorBarsSvg, NumbersAsManyShotsAsHaveRoom) {
  CameraRecord many = camera();
  many.shots.assign(100, usedShot(0.1, {}));
  // 4.6 wide each: every fifth one.
  EXPECT_THAT(errorBarsSvg(many, 0.5), AllOf(HasSubstr(">1</text>"), HasSubstr(">6</text>"),
                                             HasSubstr(">96</text>"), Not(HasSubstr(">2</text>"))));
}

TEST(ErrorBarsSvg, IsEmptyWithoutShots) {
  EXPECT_EQ(errorBarsSvg(cameraAt("left", "", {}), 0.5), "");
}

TEST(ErrorBarsSvg, KeepsIdsAndReasonsAsText) {
  CameraRecord hostile = camera();
  hostile.id = kHostileId;
  hostile.shots[1].detail = kHostileId;
  EXPECT_THAT(errorBarsSvg(hostile, 0.5),
              AllOf(Not(HasSubstr("<img")), HasSubstr("Shot 2: &lt;/script&gt;")));
}

} // namespace
} // namespace velmorn::tool
