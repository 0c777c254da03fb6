// The rig as shapes, worked out by hand.
#include "velmorn/report_model.h"

#include <gmock/gmock.h>

#include "tools/expect_tool_error.h"
#include "tools/record_sample.h"

namespace velmorn::tool {
namespace {

using testing::ElementsAre;

ShotRecord shotAt(const cv::Vec3d& place) {
  ShotRecord shot = usedShot(0.1, std::vector<cv::Point2d>(12, {1, 1}));
  shot.camFromBoard =
      cv::Matx44d(1, 0, 0, place[0], 0, 1, 0, place[1], 0, 0, 1, place[2], 0, 0, 0, 1);
  return shot;
}

TEST(ReportModel, PlacesCamerasAndTheirParents) {
  StitchRecord record = twoCameraRecord();
  record.cameras.insert(record.cameras.begin(), unlinkedCamera("lost"));
  const ReportModel model = reportModel(record);
  ASSERT_EQ(model.cameras.size(), 2U);
  EXPECT_EQ(model.cameras[0].camera, 1U);
  EXPECT_FALSE(model.cameras[0].parent);
  EXPECT_EQ(model.cameras[1].camera, 2U);
  EXPECT_EQ(model.cameras[1].parent, 1U);
  EXPECT_EQ(model.cameras[1].baseFromCam(0, 3), 300);
}

TEST(ReportModel, TakesTheImagesCornersFromTheIntrinsics) {
  StitchRecord record = twoCameraRecord();
  IntrinsicsRecord lens;
  const double matrix[] = {100, 0, 49.5, 0, 200, 39.5, 0, 0, 1};
  std::copy_n(matrix, 9, lens.model.intrinsic.matrix);
  record.cameras[0].intrinsics = lens;
  record.cameras[0].imageSize = {200, 80};
  const ReportModel model = reportModel(record);
  EXPECT_THAT(model.cameras[0].corners, ElementsAre(cv::Point2d(-0.5, -0.2), cv::Point2d(1.5, -0.2),
                                                    cv::Point2d(1.5, 0.2), cv::Point2d(-0.5, 0.2)));
  EXPECT_EQ(model.cameras[1].corners[0], cv::Point2d(-0.577, -0.433)); // a usual lens
}

TEST(ReportModel, TakesTheSizeOfTheCameraFileWithoutImages) {
  StitchRecord record = twoCameraRecord();
  IntrinsicsRecord lens;
  lens.model.intrinsic.matrix[0] = lens.model.intrinsic.matrix[4] = 10;
  record.cameras[0].intrinsics = lens;
  EXPECT_EQ(reportModel(record).cameras[0].corners[0], cv::Point2d(-0.577, -0.433));
  record.cameras[0].intrinsics->model.imageSize = {10, 10};
  EXPECT_EQ(reportModel(record).cameras[0].corners[2], cv::Point2d(0.95, 0.95));
  record.cameras[0].intrinsics->model.imageSize = {10000, 10};
  EXPECT_EQ(reportModel(record).cameras[0].corners[2], cv::Point2d(4, 0.95)); // cut there
}

// 3 x 4 inner corners of squares of 10: the board reaches from -10, -10 to 30, 40.
TEST(ReportModel, OutlinesAPlainBoardAroundItsOuterSquares) {
  StitchRecord record = twoCameraRecord();
  record.cameras[1].shots = {refusedShot("no-board"), shotAt({1, 2, 500})};
  const ReportModel model = reportModel(record);
  ASSERT_EQ(model.boards.size(), 1U);
  EXPECT_EQ(model.boards[0].camera, 1U);
  EXPECT_EQ(model.boards[0].shot, 1U);
  EXPECT_THAT(model.boards[0].outline,
              ElementsAre(cv::Vec3d(291, -8, 500), cv::Vec3d(331, -8, 500), cv::Vec3d(331, 42, 500),
                          cv::Vec3d(291, 42, 500)));
}

TEST(ReportModel, OutlinesThePartOfADataCodeBoardThatIsSeen) {
  StitchRecord record = twoCameraRecord();
  record.hasDataCodes = true;
  record.cameras[0].shots = {shotAt({0, 0, 500})};
  record.cameras[0].shots[0].grid = {{3, 5}, {7, 4}, {4, 9}};
  EXPECT_THAT(reportModel(record).boards.at(0).outline,
              ElementsAre(cv::Vec3d(30, 40, 500), cv::Vec3d(70, 40, 500), cv::Vec3d(70, 90, 500),
                          cv::Vec3d(30, 90, 500)));
  record.square = 0; // unknown
  EXPECT_TRUE(reportModel(record).boards.empty());
}

TEST(ReportModel, LeavesOutBoardsThatAreTooFarAway) {
  StitchRecord record = twoCameraRecord();
  record.cameras[0].shots = {shotAt({0, 0, 1e300}), shotAt({0, 0, 5})};
  EXPECT_EQ(reportModel(record).boards.size(), 1U);
}

TEST(ReportModel, NamesACameraThatIsTooFarAway) {
  StitchRecord record = twoCameraRecord();
  (*record.cameras[1].baseFromCam)(2, 3) = 1e200;
  EXPECT_EQ(toolError([&] { reportModel(record); }),
            "camera \"right\" is too far from the base to be drawn");
}

TEST(ReportModel, PutsImagePlacesInFrontOfTheCamera) {
  const ReportModel model = reportModel(twoCameraRecord());
  EXPECT_EQ(imagePlace(model.cameras[1], {0.5, -0.25}, 40), cv::Vec3d(320, -10, 40));
}

TEST(ReportModel, ConsistsOfTipsAndBoards) {
  StitchRecord record = twoCameraRecord();
  record.cameras[0].shots = {shotAt({0, 0, 500})};
  const std::vector<cv::Vec3d> points = modelPoints(reportModel(record));
  ASSERT_EQ(points.size(), 6U);
  EXPECT_EQ(points[1], cv::Vec3d(300, 0, 0));
  EXPECT_EQ(points[4], cv::Vec3d(30, 40, 500));
}

} // namespace
} // namespace velmorn::tool
