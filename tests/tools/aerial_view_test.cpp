// Aerial views of one row of pixels, worked out by hand.
#include "velmorn/aerial_view.h"

#include <gmock/gmock.h>

#include "support/temp_dir.h"
#include "tools/aerial_builder.h"
#include "tools/expect_tool_error.h"

namespace velmorn::tool {
namespace {

using testing::HasSubstr;

class AerialViewTest : public TempDirTest {
 protected:
  AerialViewTest() {
    writeTwoCameraJobFiles(dir());
    writeFile("job.json", twoCameraJob().dump());
    job_ = readAerialJob("job.json");
    images_.depth = {depthRow(100), depthRow(50)};
  }

  std::vector<int> firstRow(const AerialView& view) {
    return {view.depth.at<std::uint16_t>(0, 0), view.depth.at<std::uint16_t>(0, 1),
            view.depth.at<std::uint16_t>(0, 2), view.depth.at<std::uint16_t>(0, 3)};
  }

  AerialJob job_;
  AerialImages images_;
};

// Two of three cells at 50: 2/3 of 255 is 170; then all of them.
TEST_F(AerialViewTest, ShowsTheNearestSamplesInFalseColours) {
  const AerialView view = renderAerialView(job_, images_);
  EXPECT_EQ(view.grid.size, cv::Size(4, 2));
  EXPECT_THAT(firstRow(view), testing::ElementsAre(100, 50, 50, 0));
  EXPECT_EQ(cv::countNonZero(view.depth.row(1)), 0);
  EXPECT_EQ(view.cellsOf[0], 1U);
  EXPECT_EQ(view.cellsOf[1], 2U);
  EXPECT_EQ(view.picture.at<cv::Vec3b>(0, 0), cv::Vec3b(255, 0, 0));
  EXPECT_EQ(view.picture.at<cv::Vec3b>(0, 1), cv::Vec3b(170, 170, 85));
  EXPECT_EQ(view.picture.at<cv::Vec3b>(0, 3), cv::Vec3b(0, 0, 0));
}

TEST_F(AerialViewTest, ShowsColoursAsTheyAre) {
  images_.colour = {cv::Mat(1, 5, CV_8UC3, cv::Scalar(1, 2, 3)),
                    cv::Mat(1, 5, CV_8UC3, cv::Scalar(0, 0, 0))};
  const AerialView view = renderAerialView(job_, images_);
  EXPECT_EQ(view.picture.at<cv::Vec3b>(0, 0), cv::Vec3b(1, 2, 3));
  EXPECT_EQ(view.picture.at<cv::Vec3b>(0, 1), cv::Vec3b(0, 0, 0));
  EXPECT_EQ(view.cellsOf[1], 2U); // black is a colour
}

// The same scene in a length unit of which a count is a quarter.
TEST_F(AerialViewTest, ConvertsLengthsToCounts) {
  job_.depthUnit = 0.25;
  job_.region *= 0.25;
  job_.resolution *= 0.25;
  for (AerialJobCamera& camera : job_.cameras) camera.firstFromCam(0, 3) *= 0.25;
  const AerialView view = renderAerialView(job_, images_);
  EXPECT_EQ(view.grid.size, cv::Size(4, 2));
  EXPECT_EQ(view.grid.x1, -0.375);
  EXPECT_EQ(view.grid.cell, 0.25);
  EXPECT_THAT(firstRow(view), testing::ElementsAre(100, 50, 50, 0));
}

TEST_F(AerialViewTest, KeepsBothBytesOfDeepSamples) {
  images_.depth = {depthRow(0), depthRow(0)};
  images_.depth[0].at<std::uint16_t>(2) = 65534; // on the axis
  const AerialView view = renderAerialView(job_, images_);
  EXPECT_THAT(firstRow(view), testing::ElementsAre(0, 65534, 0, 0));
}

TEST_F(AerialViewTest, RefusesGridsBeyondTheLimit) {
  job_.resolution = 1e-4;
  EXPECT_THAT(toolError([&] { aerialGrid(job_); }), HasSubstr("would have 30001 x 10001 cells"));
  job_.resolution = 1;
  job_.depthUnit = 1e-39;
  EXPECT_THAT(toolError([&] { aerialGrid(job_); }), HasSubstr("beyond single precision"));
  job_.depthUnit = 1;
  job_.region = {1e30, 0, 1e30 + 1, 1};
  EXPECT_THAT(toolError([&] { aerialGrid(job_); }), HasSubstr("beyond single precision"));
}

TEST_F(AerialViewTest, SaysWhatTheLibraryRefuses) {
  images_.colour = {cv::Mat(1, 4, CV_8UC3, cv::Scalar(0, 0, 0)),
                    cv::Mat(1, 5, CV_8UC3, cv::Scalar(0, 0, 0))};
  EXPECT_EQ(toolError([&] { renderAerialView(job_, images_); }),
            "the library refused the images with status -1107");
}

} // namespace
} // namespace velmorn::tool
