// Single board images for tests that need files but no rig.
#ifndef VELMORN64_TESTS_STITCHING_BOARD_FILES_H
#define VELMORN64_TESTS_STITCHING_BOARD_FILES_H

#include <cstdint>
#include <string>
#include <vector>

#include <opencv2/core.hpp>

#include "support/board_renderer.h"

namespace velmorn {

// A small board, so that small images show it with squares wide enough for the refinement.
inline BoardSpec smallBoard() {
  BoardSpec board;
  board.width = 5;
  board.height = 4;
  return board;
}

// A picture of a board that fills most of it, tilted differently per variant (0, 1, 2, ...).
struct BoardPhoto {
  cv::Mat image;
  std::vector<cv::Point2f> corners; // the truth, pixels
};
BoardPhoto takePhoto(cv::Size imageSize = {320, 240}, int variant = 0,
                     const BoardSpec& board = smallBoard(), const ImageEffects& effects = {0.6});

// Writes such a picture, or one without a board, and returns the path.
std::string writePhoto(const std::string& path, cv::Size imageSize = {320, 240}, int variant = 0);
std::string writeBlank(const std::string& path, cv::Size imageSize = {320, 240});

// A PNG file that claims the given size and holds the start of its pixels only, check sums right.
std::string pngClaiming(std::uint32_t width, std::uint32_t height);

// What the corner search does to one image, with OpenCV alone; empty where no board is found.
std::vector<cv::Point2f> searchWithOpencv(const cv::Mat& grey, cv::Size patternSize);

} // namespace velmorn

#endif // VELMORN64_TESTS_STITCHING_BOARD_FILES_H
