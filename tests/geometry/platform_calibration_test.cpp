#include <climits>
#include <cmath>

#include <gtest/gtest.h>
#include <opencv2/imgproc.hpp>

#include "geometry/extrinsics.h"
#include "geometry/spoken.h"
#include "support/board_renderer.h"
#include "support/matchers.h"

namespace velmorn {
namespace {

// One view of a board of 9 x 6 inner corners, squares of 20.
class PlatformCalibration : public testing::Test {
 protected:
  PlatformCalibration() {
    board.square = 20;
    camFromBoard = transformOf(rotation({0.25, -0.2, 0.1}), {-85, -45, 300});
    ImageEffects effects;
    effects.blurSigma = 0.7;
    effects.noiseSigma = 2;
    grey = BoardRenderer(camera).render(board, camFromBoard, effects);
  }

  static cv::Matx33d rotation(const cv::Vec3d& rotationVector) {
    cv::Matx33d R;
    cv::Rodrigues(rotationVector, R);
    return R;
  }

  static tagOzKImage recordOf(const cv::Mat& pixels, std::uint32_t type) {
    tagOzKImage image{};
    image.type = type;
    image.dataType = 99; // not read
    image.width = static_cast<std::uint32_t>(pixels.cols);
    image.height = static_cast<std::uint32_t>(pixels.rows);
    image.data = pixels.data;
    return image;
  }

  // Three channels that differ from one another, in the order of type 514 and of type 512.
  cv::Mat colour514() const {
    cv::Mat channels[3] = {grey * 0.6, grey * 0.9 + 10, grey}, colour;
    cv::merge(channels, 3, colour);
    return colour;
  }
  cv::Mat colour512() const {
    cv::Mat swapped;
    cv::cvtColor(colour514(), swapped, cv::COLOR_BGR2RGB);
    return swapped;
  }

  int call(tagOzKImage* image, bool keepBoardAxes, const cv::Vec3f& offset = {}) {
    int status = 0;
    spoken = spokenBy([&] {
      status = ozkCalirateCamAndPlatform(image, camera.intrinsicRecord(), camera.distortionRecord(),
                                         boardSize, squareSize, target, offset[0], offset[1],
                                         offset[2], keepBoardAxes);
    });
    return status;
  }
  int call(const cv::Mat& pixels, std::uint32_t type, bool keepBoardAxes,
           const cv::Vec3f& offset = {}) {
    tagOzKImage image = recordOf(pixels, type);
    return call(&image, keepBoardAxes, offset);
  }

  BoardSpec board;
  CameraModel camera = distortedCamera({640, 480}, 600);
  cv::Matx44d camFromBoard;
  cv::Mat grey;
  tagOzKSize boardSize{9, 6};
  float squareSize = 20;
  tagOzKCamExtrinsic extrinsic = foreignExtrinsic();
  tagOzKCamExtrinsic* target = &extrinsic;
  Spoken spoken;
};

TEST_F(PlatformCalibration, BoardFromCamIsTheTruth) {
  ASSERT_EQ(call(grey, 256, true), kOzkSuccess);
  EXPECT_THAT(transformOf(extrinsic), extrinsicNear(inverseOf(camFromBoard), 0.05, 0.3));
  for (const int k : {12, 13, 14}) EXPECT_EQ(extrinsic.data[k], 0);
  EXPECT_EQ(extrinsic.data[15], 1);
  EXPECT_EQ(spoken.stream, "find corners success\n");
  EXPECT_EQ(spoken.printf, "");
}

TEST_F(PlatformCalibration, SquareSizeSetsTheUnit) {
  squareSize = 0.02F;
  ASSERT_EQ(call(grey, 256, true), kOzkSuccess);
  cv::Vec3d place = shiftOf(extrinsic);
  const cv::Matx44d truth = inverseOf(camFromBoard);
  EXPECT_NEAR(place[2] * 1000, truth(2, 3), 0.3);
}

// Half a turn about the board's x axis: the rows y and z, and the camera's place along them, change
// sign.
TEST_F(PlatformCalibration, TurnedOverNegatesTheLowerRows) {
  ASSERT_EQ(call(grey, 256, true), kOzkSuccess);
  tagOzKCamExtrinsic expected = extrinsic;
  for (int k = 4; k < 12; ++k) expected.data[k] = -expected.data[k];
  ASSERT_EQ(call(grey, 256, false), kOzkSuccess);
  expectElements(extrinsic, expected, 1e-12);
}

TEST_F(PlatformCalibration, OffsetsShiftTheTranslationAfterTheTurn) {
  for (const bool keep : {true, false}) {
    ASSERT_EQ(call(grey, 256, keep), kOzkSuccess);
    tagOzKCamExtrinsic expected = extrinsic;
    expected.data[3] += 1.5;
    expected.data[7] += -20;
    expected.data[11] += 300;
    ASSERT_EQ(call(grey, 256, keep, {1.5F, -20, 300}), kOzkSuccess);
    EXPECT_TRUE(sameBytes(extrinsic, expected));
  }
}

TEST_F(PlatformCalibration, ColourAgreesWithGreyAndWithItself) {
  ASSERT_EQ(call(colour514(), 514, true), kOzkSuccess);
  const tagOzKCamExtrinsic of514 = extrinsic;
  EXPECT_EQ(spoken.stream, "find corners success\n");
  EXPECT_THAT(transformOf(of514), extrinsicNear(inverseOf(camFromBoard), 0.05, 0.3));
  ASSERT_EQ(call(colour512(), 512, true), kOzkSuccess);
  EXPECT_TRUE(sameBytes(extrinsic, of514));

  cv::Mat sameChannels;
  cv::cvtColor(grey, sameChannels, cv::COLOR_GRAY2BGR);
  ASSERT_EQ(call(grey, 256, true), kOzkSuccess);
  const tagOzKCamExtrinsic ofGrey = extrinsic;
  for (const std::uint32_t type : {512U, 514U}) {
    ASSERT_EQ(call(sameChannels, type, true), kOzkSuccess);
    EXPECT_TRUE(sameBytes(extrinsic, ofGrey));
  }
}

TEST_F(PlatformCalibration, CallersPixelsAreNotTouched) {
  const cv::Mat images[3] = {grey, colour512(), colour514()};
  const std::uint32_t types[3] = {256, 512, 514};
  for (int i = 0; i < 3; ++i) {
    const cv::Mat before = images[i].clone();
    ASSERT_EQ(call(images[i], types[i], true), kOzkSuccess);
    EXPECT_EQ(cv::norm(images[i], before, cv::NORM_INF), 0);
  }
}

TEST_F(PlatformCalibration, NoBoard) {
  for (const bool keep : {true, false})
    EXPECT_EQ(call(BoardRenderer(camera).renderEmpty(), 256, keep), kOzkComputationFailed);
  EXPECT_EQ(spoken.stream, "find corners failed\n");
  EXPECT_EQ(spoken.printf, "");
  boardSize = {8, 6};
  EXPECT_EQ(call(colour512(), 512, true), kOzkComputationFailed);
  EXPECT_EQ(spoken.stream, "find corners failed\n");
  EXPECT_TRUE(untouched(extrinsic));
}

TEST_F(PlatformCalibration, NullPointers) {
  EXPECT_EQ(call(nullptr, true), kOzkNullPointer);
  target = nullptr;
  EXPECT_EQ(call(grey, 258, true), kOzkNullPointer); // before the type is looked at
  target = &extrinsic;
  tagOzKImage image = recordOf(grey, 256);
  image.data = nullptr;
  EXPECT_EQ(call(&image, true), kOzkNullPointer);
  EXPECT_EQ(spoken.stream, "");
  EXPECT_TRUE(untouched(extrinsic));
}

TEST_F(PlatformCalibration, OtherTypesAndSizes) {
  for (const std::uint32_t type : {258U, 0U, 255U, 513U, UINT_MAX}) {
    tagOzKImage image = recordOf(grey, type);
    EXPECT_EQ(call(&image, true), kOzkBadSize);
    image.data = nullptr;
    EXPECT_EQ(call(&image, true), kOzkBadSize);
  }
  for (const std::uint32_t side : {0U, UINT_MAX}) {
    tagOzKImage image = recordOf(grey, 256);
    image.width = side;
    EXPECT_EQ(call(&image, true), kOzkBadSize);
    image = recordOf(grey, 256);
    image.height = side;
    EXPECT_EQ(call(&image, true), kOzkBadSize);
  }
  EXPECT_EQ(spoken.stream, "");
  EXPECT_TRUE(untouched(extrinsic));
}

TEST_F(PlatformCalibration, BoardSizesThatNoDetectorTakes) {
  for (const tagOzKSize size : {tagOzKSize{0, 0}, tagOzKSize{2, 6}, tagOzKSize{9, -6}}) {
    boardSize = size;
    EXPECT_EQ(call(grey, 256, true), kOzkComputationFailed);
    EXPECT_EQ(spoken.stream, "");
  }
  for (const tagOzKSize size : {tagOzKSize{100000, 100000}, tagOzKSize{INT_MAX, INT_MAX}}) {
    boardSize = size;
    EXPECT_EQ(call(grey, 256, true), kOzkComputationFailed);
  }
  EXPECT_TRUE(untouched(extrinsic));
}

TEST_F(PlatformCalibration, TinyImagesEnd) {
  for (int side = 1; side < 40; side += 3) {
    const cv::Mat tiny = grey(cv::Rect(300, 200, side, side)).clone();
    EXPECT_EQ(call(tiny, 256, true), kOzkComputationFailed);
  }
}

TEST_F(PlatformCalibration, OddCameraParametersEnd) {
  for (const double odd : {0.0, std::nan(""), HUGE_VAL})
    for (int place = 0; place < 3; ++place) {
      camera = distortedCamera({640, 480}, 600);
      squareSize = 20;
      if (place == 0) camera.matrix(0, 0) = odd;
      if (place == 1) camera.distortion[0] = odd;
      if (place == 2) squareSize = static_cast<float>(odd);
      const int status = call(grey, 256, true);
      EXPECT_TRUE(status == kOzkSuccess || status == kOzkComputationFailed);
    }
}

} // namespace
} // namespace velmorn
