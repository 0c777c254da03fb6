#include "geometry/board_corners.h"

#include <cmath>

#include <gtest/gtest.h>
#include <opencv2/imgproc.hpp>

#include "support/board_renderer.h"

namespace velmorn {
namespace {

// The board 400 mm in front of the camera, its middle on the line of sight, turned a little.
cv::Matx44d tiltedBoard() {
  const double s = 0.2, c = std::sqrt(1 - s * s);
  return {c, 0, s, -95, 0, 1, 0, -60, -s, 0, c, 400, 0, 0, 0, 1};
}

class BoardCorners : public testing::Test {
 protected:
  BoardSpec board;
  CameraModel camera = plainCamera({640, 480}, 600);
  cv::Mat image = BoardRenderer(camera).render(board, tiltedBoard());
  std::vector<cv::Point2f> corners;
};

TEST_F(BoardCorners, RefinedCornersAreAtTheTruth) {
  ASSERT_TRUE(detectBoardCorners(image, board.patternSize(), corners));
  refineBoardCorners(image, corners);
  const std::vector<cv::Point2f> truth = projectCorners(camera, board, tiltedBoard());
  ASSERT_EQ(corners.size(), truth.size());
  for (std::size_t i = 0; i < truth.size(); ++i)
    EXPECT_LT(cv::norm(corners[i] - truth[i]), 0.15) << "corner " << i;
}

TEST_F(BoardCorners, ColourImageIsSearchedAsWell) {
  cv::Mat colour;
  cv::cvtColor(image, colour, cv::COLOR_GRAY2BGR);
  EXPECT_TRUE(detectBoardCorners(colour, board.patternSize(), corners));
}

TEST_F(BoardCorners, AnotherPatternIsNotFound) {
  EXPECT_FALSE(detectBoardCorners(image, {8, 5}, corners));
}

TEST_F(BoardCorners, RefusedPatternSizeThrows) {
  EXPECT_THROW(detectBoardCorners(image, {2, 2}, corners), cv::Exception);
}

TEST_F(BoardCorners, RefinementFitsFrom27Pixels) {
  EXPECT_TRUE(fitsCornerRefinement({27, 27}));
  EXPECT_FALSE(fitsCornerRefinement({26, 480}));
  EXPECT_FALSE(fitsCornerRefinement({640, 26}));
  std::vector<cv::Point2f> middle{{13, 13}};
  EXPECT_NO_THROW(refineBoardCorners(cv::Mat(27, 27, CV_8UC1, cv::Scalar(9)), middle));
  EXPECT_THROW(refineBoardCorners(cv::Mat(26, 27, CV_8UC1, cv::Scalar(9)), middle), cv::Exception);
}

} // namespace
} // namespace velmorn
