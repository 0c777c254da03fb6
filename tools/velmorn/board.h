// The board as the user describes it.
#ifndef VELMORN64_TOOLS_BOARD_H
#define VELMORN64_TOOLS_BOARD_H

#include <optional>
#include <string>
#include <vector>

#include <opencv2/core.hpp>

#include "velmorn64.h"

namespace velmorn::tool {

// Inner corners along one side of a board.
constexpr int kMinBoardSide = 3;
constexpr int kMaxBoardSide = 1000;

// Reads "9x6": two whole numbers within the limits, nothing besides. Nothing when the text has
// another form.
std::optional<tagOzKSize> parseSides(const std::string& text, int smallest, int largest);

// Reads "9x6": inner corners per row, then per column. Nothing when the text has another form or a
// side is out of range.
std::optional<tagOzKSize> parseBoard(const std::string& text);

// What a text has to look like for parseBoard, for messages.
std::string boardRule();

// The square's side as the library takes it. Nothing when it is not finite, or not above 0.
std::optional<float> usableSquare(double square);

// The inner corners in the board's own frame, row by row, in the unit of `square`.
std::vector<cv::Point3f> boardPoints(tagOzKSize board, float square);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_BOARD_H
