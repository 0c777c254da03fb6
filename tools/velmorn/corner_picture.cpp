// An image with a board's corners drawn into it.
#include "velmorn/corner_picture.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <vector>

#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include "velmorn/tool_error.h"

namespace velmorn::tool {
namespace {

constexpr std::array<const char*, 6> kExtensions = {".png", ".jpg", ".jpeg",
                                                    ".bmp", ".tif", ".tiff"};
constexpr int kNumberedLines = 5;    // every so many grid lines
constexpr double kNumberSize = 0.08; // of the numbers, per pixel of a cross's arm
constexpr int kFractionBits = 4;     // of the places that are drawn at

const cv::Scalar kCrossColour(0, 200, 0); // blue, green, red
const cv::Scalar kSquareColour(255, 96, 0);
const cv::Scalar kNumberColour(0, 0, 255);

// Pixels; large images are looked at from farther away.
int crossArm(const cv::Mat& image) { return std::max(4, std::min(image.cols, image.rows) / 160); }

cv::Point drawnAt(cv::Point2f place) { return place * (1 << kFractionBits); }

void drawLine(cv::Mat& picture, cv::Point2f from, cv::Point2f to, const cv::Scalar& colour) {
  cv::line(picture, drawnAt(from), drawnAt(to), colour, 1, cv::LINE_AA, kFractionBits);
}

void drawCross(cv::Mat& picture, cv::Point2f place) {
  const auto arm = static_cast<float>(crossArm(picture));
  drawLine(picture, place - cv::Point2f(arm, 0), place + cv::Point2f(arm, 0), kCrossColour);
  drawLine(picture, place - cv::Point2f(0, arm), place + cv::Point2f(0, arm), kCrossColour);
}

void drawNumber(cv::Mat& picture, const GridCorner& corner) {
  const int arm = crossArm(picture);
  const std::string text = std::to_string(corner.column) + "," + std::to_string(corner.row);
  const cv::Point start(cvRound(corner.pixel.x) + arm, cvRound(corner.pixel.y) - arm);
  cv::putText(picture, text, start, cv::FONT_HERSHEY_SIMPLEX, kNumberSize * arm, kNumberColour, 1,
              cv::LINE_AA);
}

bool isNumbered(const GridCorner& corner) {
  return corner.column % kNumberedLines == 0 && corner.row % kNumberedLines == 0;
}

} // namespace

bool isPictureName(const std::string& path) {
  const std::string extension = std::filesystem::path(path).extension().string();
  return std::find(kExtensions.begin(), kExtensions.end(), extension) != kExtensions.end();
}

cv::Mat drawCorners(const cv::Mat& grey, const GridCorners& found) {
  cv::Mat picture;
  cv::cvtColor(grey, picture, cv::COLOR_GRAY2BGR);
  for (std::size_t i = 0; i < found.codeSquare.size(); ++i)
    drawLine(picture, found.codeSquare[i], found.codeSquare[(i + 1) % 4], kSquareColour);
  for (const GridCorner& corner : found.corners) drawCross(picture, corner.pixel);
  for (const GridCorner& corner : found.corners)
    if (isNumbered(corner)) drawNumber(picture, corner);
  for (const GridCorner& corner : {found.corners.front(), found.corners.back()})
    if (!isNumbered(corner)) drawNumber(picture, corner);
  return picture;
}

std::string pictureFile(const cv::Mat& picture, const std::string& path) {
  std::vector<uchar> bytes;
  if (!cv::imencode(std::filesystem::path(path).extension().string(), picture, bytes))
    throw ToolError("the picture could not be written as " + path);
  return {bytes.begin(), bytes.end()};
}

} // namespace velmorn::tool
