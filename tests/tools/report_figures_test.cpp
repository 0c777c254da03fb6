// The numbers of a run, worked out by hand.
#include "velmorn/report_figures.h"

#include <gmock/gmock.h>

#include "tools/record_sample.h"

namespace velmorn::tool {
namespace {

std::vector<cv::Point2d> corners(std::size_t number) {
  return std::vector<cv::Point2d>(number, {1, 1});
}

TEST(ReportFigures, WeighsErrorsByTheirCorners) {
  StitchRecord record = twoCameraRecord();
  record.cameras[0].shots = {usedShot(1, corners(3)), usedShot(3, corners(1)),
                             refusedShot("no-board")};
  record.cameras[1].shots = {usedShot(3, corners(4))};
  // (3 * 1 + 1 * 9) / 4 = 3, and with 4 * 9 more (12 + 36) / 8 = 6.
  EXPECT_DOUBLE_EQ(reprojectionRms(record.cameras[0]).value(), std::sqrt(3.0));
  EXPECT_DOUBLE_EQ(reprojectionRms(record).value(), std::sqrt(6.0));
}

TEST(ReportFigures, HasNoErrorWithoutShots) {
  StitchRecord record = twoCameraRecord();
  record.cameras[0].shots = {refusedShot("not-loaded"), usedShot(1, {})};
  EXPECT_FALSE(reprojectionRms(record));
}

TEST(ReportFigures, TakesTheLargestResidualOfALink) {
  StitchRecord record = twoCameraRecord();
  record.cameras[0].residual = 9; // of the base: no link
  EXPECT_FALSE(largestResidual(record));
  record.cameras[1].residual = 0.5;
  record.cameras.push_back(cameraAt("third", "right", {}));
  record.cameras[2].residual = 0.25;
  EXPECT_EQ(largestResidual(record), 0.5);
}

TEST(ReportFigures, CountsCamerasAndShots) {
  StitchRecord record = twoCameraRecord();
  record.cameras.push_back(unlinkedCamera("lost"));
  for (CameraRecord& camera : record.cameras) {
    camera.imagesFound = 2;
    camera.imagesTotal = 3;
  }
  EXPECT_EQ(placedCameras(record), 2U);
  EXPECT_EQ(shotsUsed(record), 6U);
  EXPECT_EQ(shotsTotal(record), 9U);
}

TEST(ReportFigures, SaysWhyAShotWasRefused) {
  EXPECT_EQ(refusalText(refusedShot("no-board")), "no board found");
  EXPECT_EQ(refusalText(refusedShot("not-loaded")), "the image could not be loaded");
  EXPECT_EQ(refusalText(refusedShot("wrong-size")), "other size than the camera's first image");
  EXPECT_EQ(refusalText(refusedShot("no-board", "only 5 corners")), "only 5 corners");
  EXPECT_EQ(refusalText(refusedShot("other")), "other");
}

TEST(ReportFigures, ShowsPathsFromTheResultsFolder) {
  EXPECT_EQ(shownPath("rig", "rig/cam1/a.png"), "cam1/a.png");
  EXPECT_EQ(shownPath("", "cam1/a.png"), "cam1/a.png");
  EXPECT_EQ(shownPath("rig", "/other/a.png"), "/other/a.png");
}

} // namespace
} // namespace velmorn::tool
