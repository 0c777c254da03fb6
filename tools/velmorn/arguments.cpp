// What the words of the command line have to look like.
#include "velmorn/arguments.h"

#include <charconv>
#include <cmath>
#include <system_error>

#include "velmorn/board.h"

namespace velmorn::tool {
namespace {

std::string checkBoard(const std::string& text) {
  return parseBoard(text) ? "" : "has to be " + boardRule();
}

std::string checkLength(const std::string& text) {
  double length = 0;
  const bool isNumber = CLI::detail::lexical_cast(text, length);
  return isNumber && usableSquare(length) ? "" : "has to be a length above 0";
}

std::optional<float> parseNumber(const std::string& text) {
  float number = 0;
  const char* const end = text.data() + text.size();
  const std::from_chars_result read = std::from_chars(text.data(), end, number);
  if (read.ec != std::errc() || read.ptr != end || !std::isfinite(number)) return std::nullopt;
  return number;
}

} // namespace

std::optional<std::vector<float>> parseNumbers(const std::string& text, std::size_t number) {
  std::vector<float> numbers;
  for (std::size_t begin = 0; begin <= text.size();) {
    const std::size_t comma = std::min(text.find(',', begin), text.size());
    const std::optional<float> value = parseNumber(text.substr(begin, comma - begin));
    if (!value) return std::nullopt;
    numbers.push_back(*value);
    begin = comma + 1;
  }
  return numbers.size() == number ? std::optional(numbers) : std::nullopt;
}

CLI::Validator isBoard() { return CLI::Validator(checkBoard, "WxH"); }

CLI::Validator isLength() { return CLI::Validator(checkLength, "LENGTH"); }

CLI::Validator isNumberList(std::size_t number, const std::string& meaning) {
  return CLI::Validator(
      [=](const std::string& text) -> std::string {
        if (parseNumbers(text, number)) return "";
        return "has to be " + (number == 1 ? "a number" : meaning + ", numbers without blanks");
      },
      meaning);
}

void addBoardOptions(CLI::App& command, std::string& board, double& square) {
  command.add_option("--board", board, "Inner corners per row and column, such as 9x6")
      ->required()
      ->check(isBoard());
  command.add_option("--square", square, "Side of a square, in the unit wanted (millimetres)")
      ->required()
      ->check(isLength());
}

} // namespace velmorn::tool
