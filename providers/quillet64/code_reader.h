// Finds one readable data code of a board.
#ifndef VELMORN64_PROVIDERS_QUILLET64_CODE_READER_H
#define VELMORN64_PROVIDERS_QUILLET64_CODE_READER_H

#include <array>
#include <optional>
#include <string>

#include <opencv2/core.hpp>

namespace velmorn::quillet {

// A code that was read.
struct FoundCode {
  std::string text; // "a,b,s"
  // Corners of the square that the code stands in, pixels, (0, 0) the centre of the first pixel:
  // bottom left, top left, top right, bottom right in the symbol's own frame.
  std::array<cv::Point2f, 4> squareCorners;
};

// grey  8-bit, one channel, not empty
std::optional<FoundCode> findCode(const cv::Mat& grey);

} // namespace velmorn::quillet

#endif // VELMORN64_PROVIDERS_QUILLET64_CODE_READER_H
