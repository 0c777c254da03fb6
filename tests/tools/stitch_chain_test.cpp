// A rendered chain of four cameras, stitched from its images and compared with the rendered truth.
#include <gmock/gmock.h>

#include "support/matchers.h"
#include "support/synthetic_rig.h"
#include "support/temp_dir.h"
#include "velmorn/pose.h"
#include "velmorn/stitch_run.h"

namespace velmorn::tool {
namespace {

constexpr double kMaxDegrees = 0.05;
constexpr double kMaxPartOfDistance = 0.002;

// The rig file's content for a rendered rig.
Rig rigOf(const SyntheticRig& rendered, const ImagePathMap& images) {
  Rig rig;
  rig.board = rendered.board.patternSize();
  rig.square = static_cast<float>(rendered.board.square);
  rig.minImages = 3;
  for (std::size_t i = 0; i < rendered.ids.size(); ++i) {
    RigCamera camera;
    camera.id = rendered.ids[i];
    camera.model.intrinsic = rendered.cameras[i].intrinsicRecord();
    camera.model.distortion = rendered.cameras[i].distortionRecord();
    camera.images = images.at(camera.id);
    rig.cameras.push_back(camera);
  }
  return rig;
}

class StitchChain : public TempDirTest {
 protected:
  StitchChain() {
    RigOptions options;
    options.cameraCount = 4;
    options.groups = chainGroups(4);
    options.shotsPerGroup = 8;
    options.ids = {"A", "B", "C", "D"};
    rendered_ = makeRig(options);
    rig_ = rigOf(rendered_, rendered_.writeImages(dir(), {}));
  }

  StitchedRig stitch(int base) {
    rig_.base = base;
    const ConsoleCapture console;
    const StitchedRig stitched = stitchRig(rig_, [](const ImageReport&) {});
    EXPECT_EQ(console.text(), "");
    return stitched;
  }

  // Whether a transform is the truth for baseFromCam, within the limits.
  testing::Matcher<const cv::Matx44d&> isTruth(int base, int camera) {
    const cv::Matx44d baseFromCam = rendered_.camFromCam(base, camera);
    return extrinsicNear(baseFromCam, kMaxDegrees,
                         kMaxPartOfDistance * translationLength(baseFromCam) + 1e-9);
  }

  SyntheticRig rendered_;
  Rig rig_;
};

TEST_F(StitchChain, PlacesEveryCameraFromOneEnd) {
  const StitchedRig stitched = stitch(0);
  ASSERT_EQ(stitched.base, 0U);
  for (int i = 0; i < 4; ++i) {
    const StitchedCamera& camera = stitched.cameras[static_cast<std::size_t>(i)];
    EXPECT_THAT(camera.place.baseFromCam, isTruth(0, i)) << camera.id;
    EXPECT_EQ(camera.place.depth, i);
    EXPECT_EQ(camera.place.parent,
              i == 0 ? "" : stitched.cameras[static_cast<std::size_t>(i - 1)].id);
  }
}

TEST_F(StitchChain, ChainedEntryIsNoPlace) {
  // The library's entry is camFromBase for the direct camera, and no transform between the two
  // frames for the deeper ones: inverted or not, it is far from the truth.
  const StitchedRig stitched = stitch(0);
  EXPECT_THAT(inversePose(poseFrom(stitched.cameras[1].libraryEntry)), isTruth(0, 1));
  for (const int deep : {2, 3}) {
    const cv::Matx44d entry =
        poseFrom(stitched.cameras[static_cast<std::size_t>(deep)].libraryEntry);
    const cv::Matx44d baseFromCam = rendered_.camFromCam(0, deep);
    EXPECT_GT(translationApart(inversePose(entry), baseFromCam), 10) << deep;
    EXPECT_GT(translationApart(entry, baseFromCam), 10) << deep;
  }
}

TEST_F(StitchChain, TakesAMiddleCameraAsBaseByItself) {
  const StitchedRig stitched = stitch(kAutoBase);
  EXPECT_EQ(stitched.base, 1U);
  for (int i = 0; i < 4; ++i) {
    EXPECT_THAT(stitched.cameras[static_cast<std::size_t>(i)].place.baseFromCam, isTruth(1, i))
        << i;
  }
  EXPECT_EQ(stitched.cameras[3].place.depth, 2);
}

} // namespace
} // namespace velmorn::tool
