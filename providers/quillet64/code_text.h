// The text of a board's code.
#ifndef VELMORN64_PROVIDERS_QUILLET64_CODE_TEXT_H
#define VELMORN64_PROVIDERS_QUILLET64_CODE_TEXT_H

#include <string>

namespace velmorn::quillet {

// Whether the whole text is "a,b,s": whole numbers a and b from 1 to the largest 32-bit one, and a
// finite number s above 0, as 20, 12.5, .5 or 2e1. No signs before a and b, no spaces. Independent
// of the locale.
bool isBoardCodeText(const std::string& text);

} // namespace velmorn::quillet

#endif // VELMORN64_PROVIDERS_QUILLET64_CODE_TEXT_H
