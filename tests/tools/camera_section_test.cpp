// What the page says of one camera.
#include "velmorn/camera_section.h"

#include <gmock/gmock.h>

#include "tools/record_sample.h"

namespace velmorn::tool {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

StitchRecord recordWithShots() {
  StitchRecord record = twoCameraRecord();
  CameraRecord& right = record.cameras[1];
  right.residual = 0.25;
  right.imagesShared = 1;
  right.imageSize = {640, 480};
  right.shots = {usedShot(0.125, {{1, 1}}), refusedShot("not-loaded")};
  return record;
}

TEST(CameraSection, HasFactsChartsAndRefusals) {
  const StitchRecord record = recordWithShots();
  EXPECT_THAT(
      cameraSection(record, 1, {}, 0.5),
      AllOf(HasSubstr("<section class=\"camera\" id=\"camera-2\">"),
            HasSubstr("<dd><bdi>left</bdi>, 1 shared shot</dd>"), HasSubstr("<dd>0.2500</dd>"),
            HasSubstr("<dd>300.000</dd>"), HasSubstr("<dd>640x480 px</dd>"),
            HasSubstr("<svg class=\"bars\""), HasSubstr("<svg class=\"coverage\""),
            HasSubstr("<li>Shot 2, <bdi>refused.png</bdi>: the image could not be loaded</li>"),
            HasSubstr("<summary>Table of 2 shots</summary>")));
}

TEST(CameraSection, ShowsPicturesOrSaysWhyNot) {
  const StitchRecord record = recordWithShots();
  const std::vector<ShotPicture> pictures = {{"c21hbGw=", "bGFyZ2U=", ""},
                                             {"", "", "missing: <x>"}};
  EXPECT_THAT(
      cameraSection(record, 1, pictures, 0.5),
      AllOf(HasSubstr("<details class=\"picture\"><summary><img class=\"small\" "
                      "alt=\"Shot 1 of right, 1 corner marked\""),
            HasSubstr("src=\"data:image/jpeg;base64,c21hbGw=\""), HasSubstr("base64,bGFyZ2U=\""),
            HasSubstr("<p>Picture missing: &lt;x&gt;</p>")));
  EXPECT_THAT(cameraSection(record, 1, {{"c21hbGw=", "", ""}, {"c21hbGw=", "", ""}}, 0.5),
              Not(HasSubstr("<details class=\"picture\">")));
}

TEST(CameraSection, NeedsNoShots) {
  const StitchRecord record = twoCameraRecord();
  EXPECT_THAT(cameraSection(record, 0, {}, 0.5),
              AllOf(HasSubstr("base of the rig"), HasSubstr("says nothing about the single shots"),
                    Not(HasSubstr("<details"))));
}

TEST(CameraSection, KeepsTextFromOutsideAsText) {
  StitchRecord record = recordWithShots();
  CameraRecord& right = record.cameras[1];
  right.id = right.parent = right.shots[1].image = right.shots[1].detail = kHostileId;
  right.intrinsics = IntrinsicsRecord{kHostileId, {}};
  const std::string html = cameraSection(record, 1, {{"a", "b", ""}, {"", "", kHostileId}}, 0.5);
  EXPECT_THAT(html, AllOf(Not(HasSubstr("<img src=x")), Not(HasSubstr("</script")),
                          Not(HasSubstr("alert('"))));
}

} // namespace
} // namespace velmorn::tool
