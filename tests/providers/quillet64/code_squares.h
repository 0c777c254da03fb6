// Squares with codes, drawn pixel by pixel, and views of whole boards.
#ifndef VELMORN64_TESTS_PROVIDERS_QUILLET64_CODE_SQUARES_H
#define VELMORN64_TESTS_PROVIDERS_QUILLET64_CODE_SQUARES_H

#include <string>
#include <vector>

#include <opencv2/core.hpp>

#include "quillet64/code_reader.h"
#include "quillet64/square_geometry.h"
#include "support/code_board_renderer.h"

namespace velmorn::quillet {

constexpr int kDrawnBlack = 20;
constexpr int kDrawnWhite = 220;

// A white square with a code among its eight neighbours, and plain white around them.
struct DrawnSquare {
  cv::Mat grey;
  Quad quad; // of the middle square, first corner upper left
};

// side  pixels; the modules must come out as whole pixels
DrawnSquare drawnSquare(const cv::Mat_<uchar>& dark, int side);

// The same without a code.
DrawnSquare drawnEmptySquare(int side);

// How a board is looked at.
struct View {
  cv::Size imageSize{640, 480};
  double squarePixels = 48; // in the middle of the image, seen straight on
  double unit = 20;         // side of a square; its digits decide the size of the symbols
  double rotation = 0;      // degrees
  double tilt = 0;          // degrees
  double tiltAxis = 30;     // degrees
  ImageEffects effects{0.8, 3, 1};
  double column = 10; // of the board in the middle of the image, squares
  double row = 7;
};

// A board of 20 x 14 squares.
struct BoardView {
  cv::Mat grey;
  tool::CodeBoardSpec board;
  CameraModel camera;
  cv::Matx44d camFromBoard;

  // Whether the text is one of the board's.
  bool hasText(const std::string& text) const;
  // Largest distance of the code's corners from those that its text stands for, pixels.
  double cornerError(const FoundCode& code) const;
};

// With a usual lens's distortion.
BoardView boardView(const View& view);

} // namespace velmorn::quillet

#endif // VELMORN64_TESTS_PROVIDERS_QUILLET64_CODE_SQUARES_H
