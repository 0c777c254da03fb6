// Codes without their board's squares.
#ifndef VELMORN64_PROVIDERS_QUILLET64_WHOLE_IMAGE_SCAN_H
#define VELMORN64_PROVIDERS_QUILLET64_WHOLE_IMAGE_SCAN_H

#include <optional>
#include <string>

#include <opencv2/core.hpp>

#include "quillet64/square_geometry.h"

namespace velmorn::quillet {

struct ScannedCode {
  std::string text;
  Quad square; // of the board, continued from the code's corners; frame as the symbol stands
};

// Searches the whole image for codes of a board by their own borders.
std::optional<ScannedCode> scanWholeImage(const cv::Mat& grey);

} // namespace velmorn::quillet

#endif // VELMORN64_PROVIDERS_QUILLET64_WHOLE_IMAGE_SCAN_H
