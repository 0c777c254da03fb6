// A board's sheet as a file.
#ifndef VELMORN64_TOOLS_SHEET_DRAWING_H
#define VELMORN64_TOOLS_SHEET_DRAWING_H

#include <string>

#include "velmorn/board_sheet.h"

namespace velmorn::tool {

// The content of a file that draws the sheet in its true size. The same sheet gives the same bytes:
// no date stands in it, and the font is the drawing library's own.
std::string sheetAsPdf(const BoardSheet& sheet);
std::string sheetAsSvg(const BoardSheet& sheet);

// As a picture with one 8-bit channel that says its resolution, moved by less than a pixel so that
// the board's origin lies between pixels. Throws ToolError for more pixels than a picture may have.
std::string sheetAsPng(const BoardSheet& sheet, double pixelsPerMillimetre);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_SHEET_DRAWING_H
