// Codes without their board's squares.
#ifndef VELMORN64_PROVIDERS_QUILLET64_WHOLE_IMAGE_SCAN_H
#define VELMORN64_PROVIDERS_QUILLET64_WHOLE_IMAGE_SCAN_H

#include <optional>

#include <opencv2/core.hpp>

#include "quillet64/square_geometry.h"

namespace velmorn::quillet {

// Searches the whole image for one code by the code's own borders. The square around it, continued
// from the code's corners, within a few pixels; its frame is as the symbol stands. Nothing for
// mirrored codes and for those with a text that is no board's.
//
// Finds less and less exactly than the search for black squares, but needs none of them whole.
std::optional<Quad> scanForSquare(const cv::Mat& grey);

} // namespace velmorn::quillet

#endif // VELMORN64_PROVIDERS_QUILLET64_WHOLE_IMAGE_SCAN_H
