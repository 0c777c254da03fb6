// The command line of `velmorn board` and `velmorn corners`.
#include "velmorn/board_arguments.h"

#include <algorithm>
#include <memory>

#include "velmorn/arguments.h"
#include "velmorn/board.h"
#include "velmorn/corner_picture.h"

namespace velmorn::tool {
namespace {

constexpr double kLeastDpi = 10;
constexpr double kMostDpi = 10000;

constexpr const char* kBoardExample =
    "Example:\n"
    "  velmorn board --squares 20x14 --size 20mm -o board.pdf\n"
    "  velmorn board --squares 13x8 --size 20mm --paper a4 -o board.pdf\n"
    "  velmorn board --squares 10x7 --size 1in --plain -o chess.svg\n"
    "\n"
    "Print at 100 %, not scaled to the page, and measure the bar below the board. A board with "
    "codes\n"
    "has half a square of pattern around its squares. A plain one has an inner corner less than\n"
    "squares in each direction: 10x7 squares are --board 9x6 of the other commands.";

constexpr const char* kCornersExample =
    "Example:\n"
    "  velmorn corners shot.png -o shot-corners.png\n"
    "  velmorn corners shot.png --csv corners.csv\n"
    "  velmorn corners shot.png --board 9x6\n"
    "\n"
    "Columns and rows are grid lines: 0,0 is the outer corner of square 1,1 of a data-code board, "
    "the\n"
    "first inner corner of a plain one. Pixels have 0,0 at the centre of the first pixel.\n"
    "velmorn.log comes into the working directory.";

std::string squaresRule(int smallest) {
  return "has to be squares per row and column, such as 20x14, each " + std::to_string(smallest) +
         " to " + std::to_string(kMaxSquares);
}

std::string checkSquares(const std::string& text) {
  return parseSides(text, kMinCodeSquares, kMaxSquares) ? "" : squaresRule(kMinCodeSquares);
}

std::string checkSize(const std::string& text) {
  const std::optional<double> size = parseMillimetres(text);
  if (size && *size >= kMinSquare && *size <= kMaxSquare) return "";
  return "has to be a length such as 20mm, 2cm or 1in, from " + shortText(kMinSquare) + " to " +
         shortText(kMaxSquare) + " mm";
}

std::string checkPaper(const std::string& text) {
  return parsePaper(text) ? "" : "has to be a4 to a0, letter, fit, or a size such as 300x200mm";
}

std::string checkSheetFile(const std::string& text) {
  return sheetFormatOf(text) ? "" : "has to be a .pdf, .svg or .png file";
}

std::string checkPictureFile(const std::string& text) {
  return isPictureName(text) ? "" : "has to be a .png, .jpg, .bmp or .tif file";
}

std::string checkDpi(const std::string& text) {
  double dpi = 0;
  const bool isNumber = CLI::detail::lexical_cast(text, dpi);
  if (isNumber && dpi >= kLeastDpi && dpi <= kMostDpi) return "";
  return "has to be " + shortText(kLeastDpi) + " to " + shortText(kMostDpi);
}

// What depends on two options.
void checkPrintOptions(const PrintOptions& options, const CLI::App& command) {
  const CodeBoardSpec& spec = options.board.spec;
  if (std::min(spec.columns, spec.rows) < options.board.minSquares())
    throw CLI::ValidationError("--squares", squaresRule(options.board.minSquares()));
  if (command.count("--dpi") != 0 && sheetFormatOf(options.output) != SheetFormat::kPng)
    throw CLI::ValidationError("--dpi", "is for a .png file only");
}

} // namespace

void addBoard(CLI::App& app, PrintOptions& options) {
  CLI::App& command = *app.add_subcommand("board", "Draw a board with data codes, or a plain one");
  const auto squares = std::make_shared<std::string>();
  const auto size = std::make_shared<std::string>();
  const auto paper = std::make_shared<std::string>("fit");
  command.add_option("--squares", *squares, "Squares per row and column, such as 20x14")
      ->required()
      ->check(CLI::Validator(checkSquares, "WxH"));
  command.add_option("--size", *size, "Side of a square, with unit (millimetres)")
      ->required()
      ->check(CLI::Validator(checkSize, "LENGTH"));
  command.add_flag("--plain", options.board.plain, "A chessboard without codes");
  command.add_option("--paper", *paper, "a4 to a0, letter, a size such as 300x200mm, or fit")
      ->check(CLI::Validator(checkPaper, "PAPER"))
      ->capture_default_str();
  command
      .add_option("--dpi", options.dpi,
                  "Resolution of a .png; the next one that gives whole pixels is taken")
      ->check(CLI::Validator(checkDpi, "DPI"))
      ->capture_default_str();
  command.add_option("-o,--output", options.output, "File to write, .pdf, .svg or .png")
      ->required()
      ->check(CLI::Validator(checkSheetFile, "FILE"));
  command.footer(kBoardExample);
  command.callback([&options, &command, squares, size, paper] {
    const tagOzKSize sides = *parseSides(*squares, kMinCodeSquares, kMaxSquares);
    options.board.spec = {sides.width, sides.height, *parseMillimetres(*size)};
    options.paper = *parsePaper(*paper);
    checkPrintOptions(options, command);
  });
}

void addCorners(CLI::App& app, CornersOptions& options) {
  CLI::App& command = *app.add_subcommand("corners", "Show the board's corners in one image");
  const auto board = std::make_shared<std::string>();
  command.add_option("image", options.image, "Image file")->required()->check(CLI::ExistingFile);
  command
      .add_option("--board", *board,
                  "A plain board's inner corners per row and column, such as 9x6; without it the "
                  "board has data codes")
      ->check(isBoard());
  command.add_flag("--all", options.allCorners, "List every corner");
  command.add_option("--csv", options.csv, "File to write with every corner");
  command.add_option("-o,--output", options.output, "Picture to write with the corners drawn")
      ->check(CLI::Validator(checkPictureFile, "FILE"));
  command.footer(kCornersExample);
  command.callback([&options, board] {
    if (!board->empty()) options.board = parseBoard(*board);
  });
}

} // namespace velmorn::tool
