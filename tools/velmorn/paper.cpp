// Lengths and sheets of paper as the user writes them.
#include "velmorn/paper.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <cmath>
#include <system_error>
#include <utility>

namespace velmorn::tool {
namespace {

constexpr std::array<std::pair<const char*, double>, 5> kUnits = {
    {{"", 1.0}, {"mm", 1.0}, {"cm", 10.0}, {"m", 1000.0}, {"in", 25.4}}}; // mm

struct NamedPaper {
  const char* name;
  double width, height; // mm
};
constexpr std::array<NamedPaper, 6> kNamedPapers = {{{"a4", 210, 297},
                                                     {"a3", 297, 420},
                                                     {"a2", 420, 594},
                                                     {"a1", 594, 841},
                                                     {"a0", 841, 1189},
                                                     {"letter", 215.9, 279.4}}};

std::string lowerCase(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return text;
}

// A number and what stands behind it, blanks in between left out.
std::optional<std::pair<double, std::string>> splitNumber(const std::string& text) {
  double number = 0;
  const char* const end = text.data() + text.size();
  const auto read = std::from_chars(text.data(), end, number, std::chars_format::fixed);
  if (read.ec != std::errc() || !std::isfinite(number) || number <= 0) return std::nullopt;
  std::string rest(read.ptr, end);
  rest.erase(0, std::min(rest.find_first_not_of(' '), rest.size()));
  return std::pair(number, rest);
}

// "12x18in": the unit behind the second number is that of the first one too, unless it has its own.
std::optional<cv::Size2d> parseSheet(const std::string& text) {
  const std::size_t cross = text.find('x');
  if (cross == std::string::npos) return std::nullopt;
  std::string width = text.substr(0, cross);
  const std::string height = text.substr(cross + 1);
  const auto second = splitNumber(height);
  if (!second) return std::nullopt;
  if (!width.empty() && std::isdigit(static_cast<unsigned char>(width.back())) != 0)
    width += second->second;
  const std::optional<double> first = parseMillimetres(width);
  const std::optional<double> other = parseMillimetres(height);
  if (!first || !other) return std::nullopt;
  return cv::Size2d(*first, *other);
}

} // namespace

std::optional<double> parseMillimetres(const std::string& text) {
  const auto split = splitNumber(lowerCase(text));
  if (!split) return std::nullopt;
  for (const auto& [unit, millimetres] : kUnits)
    if (split->second == unit) return split->first * millimetres;
  return std::nullopt;
}

std::string shortText(double number) {
  char text[512]; // no double takes more than 310 digits before the point
  // Six places are a nanometre; more would show the rounding of a conversion.
  const auto end = std::to_chars(text, text + sizeof text, number, std::chars_format::fixed, 6).ptr;
  std::string shorter(text, end);
  shorter.erase(shorter.find_last_not_of('0') + 1);
  if (shorter.back() == '.') shorter.pop_back();
  return shorter;
}

std::string sizeInMillimetres(const cv::Size2d& size) {
  const auto rounded = [](double length) { return std::round(length * 10) / 10; };
  return shortText(rounded(size.width)) + "x" + shortText(rounded(size.height)) + " mm";
}

std::optional<Paper> parsePaper(const std::string& text) {
  const std::string name = lowerCase(text);
  if (name == "fit") return Paper{name, {}};
  for (const NamedPaper& paper : kNamedPapers)
    if (name == paper.name) return Paper{name, {paper.width, paper.height}};
  const std::optional<cv::Size2d> size = parseSheet(name);
  if (!size) return std::nullopt;
  return Paper{name, *size};
}

} // namespace velmorn::tool
