// `velmorn board`: a board to print.
#ifndef VELMORN64_TOOLS_BOARD_COMMAND_H
#define VELMORN64_TOOLS_BOARD_COMMAND_H

#include <optional>
#include <string>

#include "velmorn/paper.h"
#include "velmorn/printed_board.h"

namespace velmorn::tool {

enum class SheetFormat { kPdf, kSvg, kPng };

// By the file name's extension. Nothing for another one.
std::optional<SheetFormat> sheetFormatOf(const std::string& path);

struct PrintOptions {
  PrintedBoard board;
  Paper paper;
  double dpi = 300;   // of a picture
  std::string output; // file to write
};

// The summary goes to the standard output. Throws ToolError, with the output file as it was.
void runBoard(const PrintOptions& options);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_BOARD_COMMAND_H
