// Runs on the real pair that end without a result.
#include "velmorn/stitch_run.h"

#include <gmock/gmock.h>

#include <limits>

#include "support/real_images.h"
#include "support/temp_dir.h"
#include "tools/expect_tool_error.h"

namespace velmorn::tool {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

class StitchRun : public TempDirTest {
 protected:
  StitchRun() {
    const StereoSet set = stereoSet();
    rig_.board = set.patternSize;
    rig_.square = set.squareSize;
    rig_.minImages = 3;
    for (const auto& [id, images] :
         {std::pair("left", &set.left), std::pair("right", &set.right)}) {
      RigCamera camera;
      camera.id = id;
      camera.model.intrinsic = {536, 0, 342, 0, 536, 236, 0, 0, 1};
      camera.images.assign(images->begin(), images->begin() + 3);
      rig_.cameras.push_back(camera);
    }
  }

  std::string refusal() {
    return toolError([&] { stitchRig(rig_, [](const ImageReport&) {}); });
  }

  Rig rig_;
};

TEST_F(StitchRun, NamesACameraWhoseNumbersAreNotFinite) {
  rig_.cameras[1].model.intrinsic.matrix[0] = std::numeric_limits<double>::quiet_NaN();
  EXPECT_THAT(refusal(), StartsWith("camera \"right\" "));
}

TEST_F(StitchRun, GivesTheLibrarysStatusWhenItRefusesTheWholeRun) {
  rig_.board = {2, 2};
  EXPECT_THAT(refusal(), StartsWith("the library refused the run with status -1"));
  rig_.board = {9, 6};
  rig_.minImages = 4;
  EXPECT_THAT(refusal(), HasSubstr("status -1107: too few chess images"));
}

TEST_F(StitchRun, ReportsTheImagesInTheLibrarysOrder) {
  std::swap(rig_.cameras[0], rig_.cameras[1]);
  std::vector<std::string> order;
  const StitchedRig stitched =
      stitchRig(rig_, [&](const ImageReport& image) { order.push_back(image.camera); });
  EXPECT_THAT(order, testing::ElementsAre("left", "left", "left", "right", "right", "right"));
  EXPECT_EQ(stitched.cameras[0].id, "right");
  EXPECT_EQ(stitched.cameras[0].imagesFound, 3U);
}

} // namespace
} // namespace velmorn::tool
