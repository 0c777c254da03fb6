// Finds one readable data code of a board.
#include "quillet64/code_reader.h"

namespace velmorn::quillet {

std::optional<FoundCode> findCode(const cv::Mat&) { return std::nullopt; }

} // namespace velmorn::quillet
