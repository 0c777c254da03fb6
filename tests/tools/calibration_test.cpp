// Calibration of one camera: rendered images with a known lens, and images that are no use.
#include "velmorn/calibration.h"

#include <gmock/gmock.h>

#include <opencv2/imgcodecs.hpp>

#include "support/synthetic_rig.h"
#include "support/temp_dir.h"
#include "tools/expect_tool_error.h"

namespace velmorn::tool {
namespace {

using testing::HasSubstr;

constexpr float kSquare = 25;

class CalibrationTest : public TempDirTest {
 protected:
  // Images of the first of two cameras that see every board.
  std::vector<std::string> renderImages(int shots) {
    RigOptions options;
    options.shotsPerGroup = shots;
    rig_ = makeRig(options);
    return rig_.writeImages(dir(), {})["cam0"];
  }
  BoardViews find(const std::vector<std::string>& paths) {
    return findBoardViews(paths, {9, 6}, [this](const BoardView&) { ++reports_; });
  }

  SyntheticRig rig_;
  int reports_ = 0;
};

TEST_F(CalibrationTest, FindsTheLensThatTheImagesWereRenderedWith) {
  const BoardViews views = find(renderImages(12));
  EXPECT_EQ(usableCount(views), 12U);
  EXPECT_EQ(reports_, 12);
  const Calibration found = calibrate(views, {9, 6}, kSquare);
  const cv::Matx33d& truth = rig_.cameras[0].matrix;
  EXPECT_EQ(found.imageSize, cv::Size(640, 480));
  EXPECT_NEAR(found.cameraMatrix.at<double>(0, 0), truth(0, 0), 0.005 * truth(0, 0));
  EXPECT_NEAR(found.cameraMatrix.at<double>(1, 1), truth(1, 1), 0.005 * truth(1, 1));
  EXPECT_NEAR(found.cameraMatrix.at<double>(0, 2), truth(0, 2), 4);
  EXPECT_NEAR(found.cameraMatrix.at<double>(1, 2), truth(1, 2), 4);
  EXPECT_LT(found.reprojectionRms, 0.2);
}

TEST_F(CalibrationTest, SaysWhyAnImageIsNotUsable) {
  std::vector<std::string> paths = renderImages(2);
  writeFile("text.png", "no image");
  cv::imwrite("small.png", cv::Mat(100, 100, CV_8UC1, cv::Scalar(128)));
  cv::imwrite("grey.png", cv::Mat(480, 640, CV_8UC1, cv::Scalar(128)));
  paths.insert(paths.end(), {"text.png", "small.png", "grey.png"});
  const BoardViews views = find(paths);
  EXPECT_EQ(usableCount(views), 2U);
  EXPECT_EQ(views.views[2].problem, "not readable as an image");
  EXPECT_EQ(views.views[3].problem, "100x100, but the camera's images are 640x480");
  EXPECT_EQ(views.views[4].problem, "no board found");
  EXPECT_EQ(toolError([&] {
              calibrate(views, {9, 6}, kSquare);
            }),
            "2 usable images of 5, at least 3 are needed");
}

// A pattern such as left*.jpg sorts a foreign left.jpg before the camera's own images.
TEST_F(CalibrationTest, ForeignFirstImageIsLeftOut) {
  std::vector<std::string> paths = renderImages(3);
  cv::imwrite("foreign.png", cv::Mat(459, 612, CV_8UC1, cv::Scalar(128)));
  paths.insert(paths.begin(), "foreign.png");
  const BoardViews views = find(paths);
  EXPECT_EQ(views.imageSize, cv::Size(640, 480));
  EXPECT_EQ(usableCount(views), 3U);
  EXPECT_EQ(views.views[0].problem, "612x459, but the camera's images are 640x480");
}

} // namespace
} // namespace velmorn::tool
