// The modules of the code in a white square.
#include "quillet64/module_sampling.h"

#include <algorithm>

#include <opencv2/imgproc.hpp>

#include "quillet64/pixel_sampling.h"
#include "quillet64/symbol_decoding.h"

namespace velmorn::quillet {
namespace {

constexpr double kSampleOffset = 0.22; // modules, of a module's outer samples from its middle
constexpr float kSharpening = 0.25F;

double meanDarkness(const cv::Mat& grey, const cv::Matx33d& map, const SquareLook& look,
                    int modules, int column, int row) {
  double sum = 0;
  for (int dy = -1; dy <= 1; ++dy)
    for (int dx = -1; dx <= 1; ++dx) {
      const cv::Point2d at =
          inSquare(modules, column + 0.5 + dx * kSampleOffset, row + 0.5 + dy * kSampleOffset);
      const auto level = greyAt(grey, mapPoint(map, at));
      sum += level ? look.darkness(*level, at) : 0;
    }
  return sum / 9;
}

// Module (row, column) of the turned frame in the original one.
cv::Point beforeTurns(int modules, int turns, int row, int column) {
  const int last = modules - 1;
  switch (turns) {
    case 0:
      return {column, row};
    case 1:
      return {last - row, column};
    case 2:
      return {last - column, last - row};
    default:
      return {row, last - column};
  }
}

} // namespace

cv::Point2d inSquare(int modules, double moduleColumn, double moduleRow) {
  return {kCodeMargin + kCodeShare * moduleColumn / modules,
          kCodeMargin + kCodeShare * moduleRow / modules};
}

cv::Mat_<float> sampleModules(const cv::Mat& grey, const Quad& quad, const SquareLook& look,
                              int modules) {
  const cv::Matx33d map = imageFromSquare(quad);
  cv::Mat_<float> darkness(modules, modules);
  for (int row = 0; row < modules; ++row)
    for (int column = 0; column < modules; ++column)
      darkness(row, column) = static_cast<float>(
          std::clamp(meanDarkness(grey, map, look, modules, column, row), 0.0, 1.0));
  return darkness;
}

double finderScore(const cv::Mat_<float>& darkness, int turns) {
  const int modules = darkness.rows;
  double sum = 0;
  int count = 0;
  for (int row = 0; row < modules; ++row)
    for (int column = 0; column < modules; ++column) {
      if (!isFinder(modules, row, column)) continue;
      const double sign = isFinderDark(modules, row, column) ? 1 : -1;
      const double d = static_cast<double>(darkness(beforeTurns(modules, turns, row, column)));
      sum += sign * (2 * d - 1);
      ++count;
    }
  return sum / count;
}

int bestTurns(const cv::Mat_<float>& darkness) {
  int best = 0;
  for (int turns = 1; turns < 4; ++turns)
    if (finderScore(darkness, turns) > finderScore(darkness, best)) best = turns;
  return best;
}

cv::Mat_<float> turnedModules(const cv::Mat_<float>& darkness, int turns) {
  cv::Mat_<float> turned(darkness.size());
  for (int row = 0; row < darkness.rows; ++row)
    for (int column = 0; column < darkness.cols; ++column)
      turned(row, column) = darkness(beforeTurns(darkness.rows, turns, row, column));
  return turned;
}

cv::Mat_<float> sharpened(const cv::Mat_<float>& darkness) {
  // Around the code it is white.
  cv::Mat_<float> bordered, sharp;
  cv::copyMakeBorder(darkness, bordered, 1, 1, 1, 1, cv::BORDER_CONSTANT, cv::Scalar(0));
  const float side = -kSharpening;
  const cv::Mat_<float> kernel =
      (cv::Mat_<float>(3, 3) << 0, side, 0, side, 1 + 4 * kSharpening, side, 0, side, 0);
  cv::filter2D(bordered, sharp, CV_32F, kernel);
  return sharp({1, 1, darkness.cols, darkness.rows}).clone();
}

cv::Mat_<uchar> darkModules(const cv::Mat_<float>& darkness) {
  cv::Mat_<uchar> dark(darkness.size());
  for (int row = 0; row < darkness.rows; ++row)
    for (int column = 0; column < darkness.cols; ++column)
      dark(row, column) = darkness(row, column) > 0.5F ? 1 : 0;
  return dark;
}

} // namespace velmorn::quillet
