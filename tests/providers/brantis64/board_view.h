// Images of a data-code board for the extractor's tests, with the seeds a reader would give.
#ifndef VELMORN64_TESTS_PROVIDERS_BRANTIS64_BOARD_VIEW_H
#define VELMORN64_TESTS_PROVIDERS_BRANTIS64_BOARD_VIEW_H

#include <array>
#include <vector>

#include "brantis64/corner_extractor.h"
#include "support/code_board_renderer.h"

namespace velmorn::brantis {

struct ViewOptions {
  cv::Size imageSize{640, 480};
  tool::CodeBoardSpec board;
  double squarePixels = 32;     // at the image's centre
  double tilt = 0;              // degrees
  double tiltDirection = 0;     // degrees
  double roll = 0;              // degrees
  cv::Point2d lookAt{0.5, 0.5}; // shown at the image's centre, share of the coded area
  bool distorted = true;
  double light = 0; // brightness from the left to the right edge, relative
  ImageEffects effects{0.8, 3, 1};
};

struct BoardView {
  tool::CodeBoardSpec board;
  CameraModel camera;
  cv::Matx44d camFromBoard;
  cv::Mat image;

  cv::Point2f project(double x, double y) const; // board frame
  double offAxis(cv::Point2d onBoard) const;     // tangent of the angle from the optical axis
  std::vector<CodeBoardCorner> visibleCorners(double margin) const;

  // Column and row of a white square in the middle of the image, both from 1.
  cv::Point centralSquare() const;

  // What a reader gives for a square: rounded pixels. `share` is 1 for the square's own corners,
  // less for an outline inside it.
  std::array<BoardCorner, 4> seedsOf(cv::Point square, double share = 1) const;
};

BoardView makeView(const ViewOptions& options);

// How the corners compare with the truth.
struct Comparison {
  std::size_t visible = 0; // truth corners at least five pixels inside the image
  std::size_t found = 0;   // of these
  std::size_t wrong = 0;   // corners farther than half a pixel from the truth of their label
  double rms = 0;          // of the others, pixels

  double recall() const { return static_cast<double>(found) / static_cast<double>(visible); }
};

Comparison compare(const BoardView& view, const std::vector<BoardCorner>& corners);

} // namespace velmorn::brantis

#endif // VELMORN64_TESTS_PROVIDERS_BRANTIS64_BOARD_VIEW_H
