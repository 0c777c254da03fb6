// The text of a data code, and the corners of its square.
#ifndef VELMORN64_DATACODE_CODE_CONTENT_H
#define VELMORN64_DATACODE_CODE_CONTENT_H

#include <cstdint>

#include "datacode/imported_libraries.h"

namespace velmorn {

// "a,b,s"
struct CodeContent {
  int a = 0;            // column of the square, from 1
  int b = 0;            // row of the square, from 1
  float squareSize = 0; // s, unit of the board
};

// Numbers that cannot be read stay 0. In the C runtime's current locale.
CodeContent parseCodeContent(const char* text);

// The four corners of the code's square as the extractor's seed.
//
// corners  x0, y0, ... x3, y3 in the reader's order: (a - 1, b), (a - 1, b - 1), (a, b - 1), (a, b)
//          in grid units
//
// World coordinates are float(whole number) * s in single precision; whole numbers wrap around.
CalibCornerSet seedFromCode(const CodeContent& code, const std::int32_t corners[8]);

} // namespace velmorn

#endif // VELMORN64_DATACODE_CODE_CONTENT_H
