// The board as the user describes it.
#include "velmorn/board.h"

#include <algorithm>
#include <cctype>
#include <cmath>

namespace velmorn::tool {
namespace {

std::optional<int> parseSide(const std::string& text, int smallest, int largest) {
  const bool allDigits =
      std::all_of(text.begin(), text.end(), [](unsigned char c) { return std::isdigit(c) != 0; });
  if (text.empty() || text.size() > 4 || !allDigits) return std::nullopt;
  const int side = std::stoi(text);
  if (side < smallest || side > largest) return std::nullopt;
  return side;
}

} // namespace

std::optional<tagOzKSize> parseSides(const std::string& text, int smallest, int largest) {
  const std::size_t cross = text.find('x');
  if (cross == std::string::npos) return std::nullopt;
  const std::optional<int> width = parseSide(text.substr(0, cross), smallest, largest);
  const std::optional<int> height = parseSide(text.substr(cross + 1), smallest, largest);
  if (!width || !height) return std::nullopt;
  return tagOzKSize{*width, *height};
}

std::optional<tagOzKSize> parseBoard(const std::string& text) {
  return parseSides(text, kMinBoardSide, kMaxBoardSide);
}

std::string boardRule() {
  return "inner corners per row and column, such as 9x6, each " + std::to_string(kMinBoardSide) +
         " to " + std::to_string(kMaxBoardSide);
}

std::optional<float> usableSquare(double square) {
  const auto side = static_cast<float>(square);
  if (!std::isfinite(square) || !std::isfinite(side) || side <= 0) return std::nullopt;
  return side;
}

std::vector<cv::Point3f> boardPoints(tagOzKSize board, float square) {
  std::vector<cv::Point3f> points;
  for (int row = 0; row < board.height; ++row) {
    for (int column = 0; column < board.width; ++column) {
      points.emplace_back(static_cast<float>(column) * square, static_cast<float>(row) * square,
                          0.0F);
    }
  }
  return points;
}

} // namespace velmorn::tool
