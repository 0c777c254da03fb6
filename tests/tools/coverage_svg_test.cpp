// The map of the coverage.
#include "velmorn/coverage_svg.h"

#include <gmock/gmock.h>

#include "tools/record_sample.h"

namespace velmorn::tool {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

CameraRecord leftHalf() {
  CameraRecord camera = cameraAt("left", "", {});
  camera.imageSize = {640, 480};
  camera.shots = {usedShot(1, {{-0.5, -0.5}, {319.5, -0.5}, {319.5, 479.5}, {-0.5, 479.5}})};
  return camera;
}

// Half the size of the image: 16 of 32 cells of 10 x 10 in every row.
TEST(CoverageSvg, DrawsRowsOfCellsAndCorners) {
  const CameraRecord camera = leftHalf();
  EXPECT_THAT(
      coverageSvg(camera, coverageOf(camera)),
      AllOf(HasSubstr("the board was seen: 50 % of the image\""),
            HasSubstr("viewBox=\"0 0 320.0 240.0\""),
            HasSubstr(
                "<rect class=\"shade-1\" x=\"0.0\" y=\"230.0\" width=\"160.0\" height=\"10.0\"/>"),
            HasSubstr("d=\"M0.0 0.0h0M160.0 0.0h0M160.0 240.0h0M0.0 240.0h0\"")));
}

TEST(CoverageSvg, LeavesOutCornersOutsideOfTheImage) {
  CameraRecord camera = leftHalf();
  camera.shots = {usedShot(1, {{-1, 3}, {700, 3}, {3, 481}, {1.5, 3.5}})};
  EXPECT_THAT(coverageSvg(camera, coverageOf(camera)), HasSubstr("d=\"M1.0 2.0h0\""));
}

TEST(CoverageSvg, HasADarkestShade) {
  CameraRecord camera = leftHalf();
  camera.shots.assign(9, camera.shots.front());
  EXPECT_THAT(coverageSvg(camera, coverageOf(camera)),
              AllOf(HasSubstr("shade-4"), Not(HasSubstr("shade-9"))));
}

TEST(CoverageSvg, IsEmptyWithoutAnImageSize) {
  CameraRecord camera = leftHalf();
  camera.imageSize = {};
  EXPECT_EQ(coverageSvg(camera, coverageOf(camera)), "");
}

TEST(CoverageSvg, KeepsIdsAsText) {
  CameraRecord camera = leftHalf();
  camera.id = kHostileId;
  EXPECT_THAT(coverageSvg(camera, coverageOf(camera)), Not(HasSubstr("<img")));
}

} // namespace
} // namespace velmorn::tool
