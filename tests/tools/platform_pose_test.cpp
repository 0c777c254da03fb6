// The platform's pose from rendered boards with a known truth.
#include "velmorn/platform_pose.h"

#include <gmock/gmock.h>

#include <opencv2/calib3d.hpp>
#include <opencv2/imgcodecs.hpp>

#include "support/board_renderer.h"
#include "support/matchers.h"
#include "support/temp_dir.h"
#include "tools/expect_tool_error.h"

namespace velmorn::tool {
namespace {

constexpr double kDistance = 300; // from the camera to the board

class PlatformPose : public TempDirTest {
 protected:
  PlatformPose() {
    spec.square = 20;
    cv::Matx33d R;
    cv::Rodrigues(cv::Vec3d(0.25, -0.2, 0.1), R);
    camFromBoard = transformOf(R, {-85, -45, kDistance});
    grey = BoardRenderer(lens).render(spec, camFromBoard, {0.7, 2, 1});
    camera.intrinsic = lens.intrinsicRecord();
    camera.distortion = lens.distortionRecord();
    board.size = spec.patternSize();
    board.square = 20;
    board.keepBoardAxes = true;
  }
  cv::Matx44d find(const cv::Mat& image) { return transformOf(findPlatform(image, camera, board)); }
  auto isNear(const cv::Matx44d& expected) {
    return extrinsicNear(expected, 0.05, 0.001 * kDistance);
  }

  BoardSpec spec;
  const velmorn::CameraModel lens = distortedCamera({640, 480}, 600);
  cv::Matx44d camFromBoard;
  cv::Mat grey;
  CameraModel camera;
  PlatformBoard board;
};

TEST_F(PlatformPose, KeepsTheBoardsAxes) {
  EXPECT_THAT(find(grey), isNear(inverseOf(camFromBoard)));
}

TEST_F(PlatformPose, TurnsTheBoardOverAndAddsTheOffset) {
  board.keepBoardAxes = false;
  board.offset = {10, 20, -30};
  cv::Matx44d expected = cv::Matx44d::diag({1, -1, -1, 1}) * inverseOf(camFromBoard);
  for (int row = 0; row < 3; ++row) expected(row, 3) += static_cast<double>(board.offset[row]);
  EXPECT_THAT(find(grey), isNear(expected));
}

// The weights of the grey form differ per channel: with the order mixed up, the pictures would.
TEST_F(PlatformPose, TakesColourAsOpenCvReadsIt) {
  cv::Mat colour;
  cv::merge(std::vector<cv::Mat>{grey, grey * 0.9, grey * 0.8}, colour);
  cv::imwrite("colour.png", colour);
  cv::imwrite("grey.png", grey);
  const cv::Mat image = readBoardImage("colour.png");
  EXPECT_EQ(image.type(), CV_8UC3);
  EXPECT_EQ(cv::norm(image, colour, cv::NORM_INF), 0);
  EXPECT_EQ(readBoardImage("grey.png").type(), CV_8UC1);
  EXPECT_THAT(find(image), isNear(inverseOf(camFromBoard)));
}

TEST_F(PlatformPose, TakesAPartOfALargerImage) {
  cv::Mat larger;
  cv::copyMakeBorder(grey, larger, 0, 0, 0, 3, cv::BORDER_REPLICATE);
  EXPECT_THAT(find(larger(cv::Rect({0, 0}, grey.size()))), isNear(inverseOf(camFromBoard)));
}

TEST_F(PlatformPose, SaysWhyThereIsNone) {
  EXPECT_EQ(toolError([&] { find(BoardRenderer(lens).renderEmpty()); }),
            "no board with 9x6 inner corners found");
  writeFile("text.png", "no image");
  EXPECT_EQ(toolError([] { readBoardImage("text.png"); }), "text.png: not readable as an image");
}

} // namespace
} // namespace velmorn::tool
