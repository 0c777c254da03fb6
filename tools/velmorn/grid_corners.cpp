// The corners of a board in one image, numbered by its grid lines.
#include "velmorn/grid_corners.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <tuple>
#include <utility>

#include "datacode/code_content.h"
#include "geometry/board_corners.h"
#include "velmorn/tool_error.h"

namespace velmorn::tool {
namespace {

void sortByRow(std::vector<GridCorner>& corners) {
  std::sort(corners.begin(), corners.end(), [](const GridCorner& a, const GridCorner& b) {
    return std::tie(a.row, a.column) < std::tie(b.row, b.column);
  });
}

int gridLine(float coordinate, float square) {
  return static_cast<int>(
      std::lround(std::clamp(static_cast<double>(coordinate / square), -1e6, 1e6)));
}

// Codes come from outside: the numbers before theirs are counted in 64 bits.
std::vector<cv::Point2f> squareOf(const CodeContent& code, const std::vector<GridCorner>& corners) {
  const std::int64_t right = code.a, bottom = code.b;
  std::vector<cv::Point2f> square;
  for (const auto& [column, row] : {std::pair(right - 1, bottom - 1), std::pair(right, bottom - 1),
                                    std::pair(right, bottom), std::pair(right - 1, bottom)}) {
    for (const GridCorner& corner : corners)
      if (corner.column == column && corner.row == row) square.push_back(corner.pixel);
  }
  return square.size() == 4 ? square : std::vector<cv::Point2f>();
}

} // namespace

GridCorners numberCorners(const DataCodeView& view) {
  if (!view.problem.empty()) throw ToolError(view.problem);
  const CodeContent code = parseCodeContent(view.code.c_str());
  if (!std::isfinite(code.squareSize) || code.squareSize <= 0)
    throw ToolError("code " + inQuotes(view.code) + " does not say how large a square is");
  GridCorners found;
  found.code = view.code;
  found.square = static_cast<double>(code.squareSize);
  for (std::size_t i = 0; i < view.pixels.size(); ++i)
    found.corners.push_back({gridLine(view.onBoard[i].x, code.squareSize),
                             gridLine(view.onBoard[i].y, code.squareSize), view.pixels[i]});
  sortByRow(found.corners);
  found.codeSquare = squareOf(code, found.corners);
  return found;
}

GridCorners findDataCodeCorners(const cv::Mat& grey) {
  return numberCorners(findDataCodeBoard(grey));
}

GridCorners findPlainCorners(const cv::Mat& grey, tagOzKSize board) {
  if (grey.empty()) throw ToolError("not readable as an image");
  std::vector<cv::Point2f> pixels;
  if (!detectBoardCorners(grey, board, pixels))
    throw ToolError("no board with " + std::to_string(board.width) + "x" +
                    std::to_string(board.height) + " inner corners found");
  refineBoardCorners(grey, pixels);
  GridCorners found;
  for (int row = 0; row < board.height; ++row)
    for (int column = 0; column < board.width; ++column)
      found.corners.push_back(
          {column, row, pixels[static_cast<std::size_t>(row * board.width + column)]});
  return found;
}

} // namespace velmorn::tool
