// Modules of a symbol to its text.
#ifndef VELMORN64_PROVIDERS_QUILLET64_SYMBOL_DECODING_H
#define VELMORN64_PROVIDERS_QUILLET64_SYMBOL_DECODING_H

#include <optional>
#include <string>

#include <opencv2/core.hpp>

namespace velmorn::quillet {

// Sets the modules that are the same in every square Data Matrix of up to 24 modules: the dark left
// and bottom borders, the alternating top and right ones.
void forceFinder(cv::Mat_<uchar>& dark);

// Whether module (row, column) belongs to the borders, and whether it is dark there.
bool isFinder(int modules, int row, int column);
bool isFinderDark(int modules, int row, int column);

// The text of an upright square Data Matrix, errors corrected. Nothing when it cannot be read, when
// it is mirrored, or when its text is not a board's.
//
// dark  one value per module, not 0 where it is dark, row 0 on top; no margin
std::optional<std::string> decodeSymbol(const cv::Mat_<uchar>& dark);

} // namespace velmorn::quillet

#endif // VELMORN64_PROVIDERS_QUILLET64_SYMBOL_DECODING_H
