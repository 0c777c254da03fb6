// Point clouds as plain text.
#include "velmorn/xyz_file.h"

#include <algorithm>
#include <charconv>
#include <string_view>
#include <system_error>

#include "velmorn/tool_error.h"

namespace velmorn::tool {
namespace {

constexpr std::string_view kBlanks = " \t\r\f\v";
constexpr std::size_t kLongestExcerpt = 40; // characters of a wrong word in a message

// Takes the next word off the line; empty at its end.
std::string_view takeWord(std::string_view& line) {
  line.remove_prefix(std::min(line.find_first_not_of(kBlanks), line.size()));
  const std::string_view word = line.substr(0, line.find_first_of(kBlanks));
  line.remove_prefix(word.size());
  return word;
}

[[noreturn]] void failInLine(std::size_t number, const std::string& problem) {
  throw ToolError("line " + std::to_string(number) + ": " + problem);
}

double numberFrom(std::string_view word, std::size_t lineNumber) {
  std::string_view digits = word;
  if (digits.size() > 1 && digits[0] == '+' && digits[1] != '-') digits.remove_prefix(1);
  const char* const end = digits.data() + digits.size();
  double value = 0;
  const std::from_chars_result read = std::from_chars(digits.data(), end, value);
  if (read.ec == std::errc() && read.ptr == end) return value;
  const bool tooLarge = read.ec == std::errc::result_out_of_range;
  failInLine(lineNumber, inQuotes(oneLine(std::string(word.substr(0, kLongestExcerpt)))) +
                             (tooLarge ? " is out of range" : " is not a number"));
}

void addLine(PointCloud& cloud, std::string_view line, std::size_t number) {
  line = line.substr(0, line.find('#'));
  double values[3];
  for (int i = 0; i < 3; ++i) {
    const std::string_view word = takeWord(line);
    if (word.empty() && i == 0) return;
    if (word.empty()) failInLine(number, "x y z are wanted, there is less");
    values[i] = numberFrom(word, number);
  }
  addPoint(cloud, values[0], values[1], values[2]);
}

} // namespace

PointCloud parseXyz(const std::string& text) {
  PointCloud cloud;
  std::string_view rest = text;
  for (std::size_t number = 1; !rest.empty(); ++number) {
    const std::size_t end = std::min(rest.find('\n'), rest.size());
    addLine(cloud, rest.substr(0, end), number);
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
  return cloud;
}

} // namespace velmorn::tool
