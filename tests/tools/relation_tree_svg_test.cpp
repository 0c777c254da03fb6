// The drawing of the links: what it says, and that ids stay text.
#include "velmorn/relation_tree_svg.h"

#include <gmock/gmock.h>

#include "tools/record_sample.h"

namespace velmorn::tool {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

TEST(RelationTreeSvg, SaysTheResidualAndTheSharedShots) {
  StitchRecord record = twoCameraRecord();
  CameraRecord& right = record.cameras[1];
  right.residual = 0.28786;
  right.imagesShared = 1;
  right.imagesFound = 5;
  right.imagesTotal = 6;
  EXPECT_THAT(relationTreeSvg(record),
              AllOf(HasSubstr(">left<"), HasSubstr(">base, 0 of 0 shots used<"),
                    HasSubstr(">right<"), HasSubstr(">5 of 6 shots used<"),
                    HasSubstr(">residual 0.2879<"), HasSubstr(">1 shared shot<")));
  right.residual.reset();
  EXPECT_THAT(relationTreeSvg(record), HasSubstr(">no residual<"));
}

// From the middle of the base's right side (8 + 190, 8 + 26), 40 on, to the left side of the
// camera beside it (8 + 360).
TEST(RelationTreeSvg, DrawsTheLinkFromBoxToBox) {
  EXPECT_THAT(relationTreeSvg(twoCameraRecord()),
              AllOf(HasSubstr("<path class=\"link\" d=\"M198.0 34.0h40V34.0H368.0\"/>"),
                    HasSubstr("width=\"566\" height=\"68\"")));
}

TEST(RelationTreeSvg, ShowsCamerasWithoutALink) {
  StitchRecord record = twoCameraRecord();
  record.cameras[1] = unlinkedCamera("lost");
  EXPECT_THAT(relationTreeSvg(record),
              AllOf(HasSubstr("box unlinked"), HasSubstr(">lost<"), HasSubstr(">not linked<"),
                    Not(HasSubstr("residual"))));
}

TEST(RelationTreeSvg, KeepsIdsAsText) {
  StitchRecord record = twoCameraRecord();
  record.cameras[0].id = record.cameras[1].parent = kHostileId;
  EXPECT_THAT(relationTreeSvg(record), AllOf(Not(HasSubstr("<img")), Not(HasSubstr("</script")),
                                             HasSubstr("<title>&lt;/script&gt;&lt;img ")));
}

} // namespace
} // namespace velmorn::tool
