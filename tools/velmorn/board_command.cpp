// `velmorn board`: a board to print.
#include "velmorn/board_command.h"

#include <cmath>
#include <filesystem>
#include <iomanip>
#include <iostream>

#include "velmorn/atomic_file.h"
#include "velmorn/board_sheet.h"
#include "velmorn/grey_image.h"
#include "velmorn/print_resolution.h"
#include "velmorn/progress.h"
#include "velmorn/sheet_drawing.h"
#include "velmorn/tool_error.h"

namespace velmorn::tool {
namespace {

constexpr double kFewestPixels = 3; // per module

std::string rounded(double number, int decimals) {
  const double factor = std::pow(10, decimals);
  return shortText(std::round(number * factor) / factor);
}

void warnAboutPixels(const PrintResolution& resolution) {
  if (resolution.pixelsPerModule == 0 || resolution.pixelsPerModule >= kFewestPixels) return;
  const double enough = resolution.dpi() * kFewestPixels / resolution.pixelsPerModule;
  printWarning("a module is " + rounded(resolution.pixelsPerModule, 1) + " pixels at " +
               rounded(resolution.dpi(), 1) + " dpi; take --dpi " + shortText(std::ceil(enough)) +
               " or more");
}

std::string fileContent(const PrintOptions& options, const BoardSheet& sheet,
                        const PrintResolution& resolution) {
  switch (*sheetFormatOf(options.output)) {
    case SheetFormat::kPdf:
      return sheetAsPdf(sheet);
    case SheetFormat::kSvg:
      return sheetAsSvg(sheet);
    case SheetFormat::kPng:
      warnAboutPixels(resolution);
      return sheetAsPng(sheet, resolution.pixelsPerMillimetre);
  }
  return {};
}

void printResolution(const PrintResolution& resolution) {
  std::cout << "resolution  " << rounded(resolution.dpi(), 1) << " dpi";
  if (resolution.pixelsPerModule > 0)
    std::cout << ", a module is " << rounded(resolution.pixelsPerModule, 2) << " pixels";
  std::cout << (resolution.wholePixels ? "" : "; edges are not between pixels") << '\n';
}

void printSummary(const PrintOptions& options, const BoardSheet& sheet,
                  const PrintResolution& resolution) {
  const PrintedBoard& board = options.board;
  std::cout << "board       " << describe(board) << '\n';
  if (board.plain) {
    std::cout << "corners     " << innerCorners(board) << " inner ones: --board "
              << innerCorners(board) << '\n';
  } else {
    std::cout << "symbols     " << sizeText({sheet.modules, sheet.modules})
              << " modules, a module is "
              << rounded(kCodeShare * board.spec.square / sheet.modules, 3) << " mm\n";
  }
  std::cout << "page        " << sizeInMillimetres(sheet.page) << '\n';
  if (sheetFormatOf(options.output) == SheetFormat::kPng) printResolution(resolution);
  std::cout << "check       the bar below the board is "
            << rounded(sheet.bar.right - sheet.bar.left, 3) << " mm long\n"
            << "written to  " << oneLine(options.output) << '\n';
}

} // namespace

std::optional<SheetFormat> sheetFormatOf(const std::string& path) {
  const std::string extension = std::filesystem::path(path).extension().string();
  if (extension == ".pdf") return SheetFormat::kPdf;
  if (extension == ".svg") return SheetFormat::kSvg;
  if (extension == ".png") return SheetFormat::kPng;
  return std::nullopt;
}

void runBoard(const PrintOptions& options) {
  requireWritable(options.output);
  const BoardSheet sheet = layOut(options.board, options.paper);
  const PrintResolution resolution = resolutionNear(options.board, sheet.modules, options.dpi);
  writeFileAtomically(options.output, fileContent(options, sheet, resolution));
  printSummary(options, sheet, resolution);
}

} // namespace velmorn::tool
