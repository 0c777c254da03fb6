// What the words of the command line have to look like.
#include "velmorn/arguments.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <filesystem>
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

constexpr int kMostPixelsAlong = 65535;

std::optional<int> parsePixels(const std::string& text) {
  int pixels = 0;
  const char* const end = text.data() + text.size();
  const std::from_chars_result read = std::from_chars(text.data(), end, pixels);
  const bool isCount = read.ec == std::errc() && read.ptr == end;
  if (!isCount || pixels < 1 || pixels > kMostPixelsAlong) return std::nullopt;
  return pixels;
}

std::string checkRegion(const std::string& text) {
  return parseRegion(text)
             ? ""
             : "has to be X1,Y1,X2,Y2, numbers without blanks, X1 below X2 and Y1 below Y2";
}

std::string checkImageSize(const std::string& text) {
  return parseImageSize(text) ? "" : "has to be columns and rows, such as 640x480";
}

// In lower case, with the dot.
std::string extensionOf(const std::string& path) {
  std::string extension = std::filesystem::path(path).extension().string();
  std::transform(extension.begin(), extension.end(), extension.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return extension;
}

std::string listOf(const std::vector<std::string>& extensions) {
  std::string list;
  for (const std::string& extension : extensions) {
    const char* const join = extension == extensions.back() ? " or " : ", ";
    list += (list.empty() ? "" : join) + extension;
  }
  return list;
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

std::optional<tagOzKRect2Df32> parseRegion(const std::string& text) {
  const std::optional<std::vector<float>> edges = parseNumbers(text, 4);
  if (!edges) return std::nullopt;
  const tagOzKRect2Df32 region{(*edges)[0], (*edges)[1], (*edges)[2], (*edges)[3]};
  const bool isRegion = region.x1 < region.x2 && region.y1 < region.y2;
  return isRegion ? std::optional(region) : std::nullopt;
}

std::optional<cv::Size> parseImageSize(const std::string& text) {
  const std::size_t cross = text.find('x');
  if (cross == std::string::npos) return std::nullopt;
  const std::optional<int> width = parsePixels(text.substr(0, cross));
  const std::optional<int> height = parsePixels(text.substr(cross + 1));
  return width && height ? std::optional(cv::Size(*width, *height)) : std::nullopt;
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

CLI::Validator isRegion() { return CLI::Validator(checkRegion, "X1,Y1,X2,Y2"); }

CLI::Validator isImageSize() { return CLI::Validator(checkImageSize, "WxH"); }

CLI::Validator hasExtension(const std::vector<std::string>& extensions) {
  return CLI::Validator(
      [=](const std::string& path) -> std::string {
        const bool isOne =
            std::find(extensions.begin(), extensions.end(), extensionOf(path)) != extensions.end();
        return isOne ? "" : "has to be named " + listOf(extensions);
      },
      "FILE");
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
