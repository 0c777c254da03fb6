// The lines that a point cloud file begins with.
#include "velmorn/file_header.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <limits>
#include <sstream>
#include <system_error>

#include "velmorn/tool_error.h"

namespace velmorn::tool {
namespace {

constexpr std::size_t kLongestHeader = 1U << 20; // bytes
constexpr std::size_t kBodyStart = 8;            // bytes
constexpr std::size_t kLongestExcerpt = 40;      // characters of a wrong word in a message

std::string readStart(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::string start(kLongestHeader, '\0');
  file.read(start.data(), static_cast<std::streamsize>(start.size()));
  if (file.bad() || !file.is_open()) throw ToolError("not readable");
  start.resize(static_cast<std::size_t>(file.gcount()));
  return start;
}

// Others than tabs and carriage returns are blanks to some readers and not to others.
bool isStrayControl(char c) {
  const auto code = static_cast<unsigned char>(c);
  return code < 0x20 && c != '\t' && c != '\r';
}

std::vector<std::string> wordsOf(const std::string& line) {
  if (std::any_of(line.begin(), line.end(), isStrayControl)) {
    throw ToolError("the header holds a control character");
  }
  std::istringstream stream(line);
  std::vector<std::string> words;
  for (std::string word; stream >> word;) words.push_back(word);
  return words;
}

} // namespace

FileHeader readFileHeader(const std::string& path, const std::string& last) {
  const std::string start = readStart(path);
  FileHeader header;
  for (std::size_t begin = 0, end = 0; (end = start.find('\n', begin)) != std::string::npos;) {
    const std::vector<std::string> words = wordsOf(start.substr(begin, end - begin));
    begin = end + 1;
    if (words.empty()) continue;
    header.lines.push_back(words);
    if (words[0] != last) continue;
    header.bodySize = std::filesystem::file_size(path) - begin;
    header.bodyStart = start.substr(begin, kBodyStart);
    return header;
  }
  throw ToolError("the header has no line " + inQuotes(last));
}

std::uint64_t headerNumber(const std::string& word) {
  std::uint64_t number = 0;
  const char* const end = word.data() + word.size();
  const std::from_chars_result read = std::from_chars(word.data(), end, number);
  if (read.ec != std::errc() || read.ptr != end) {
    throw ToolError("the header has " + inQuotes(word.substr(0, kLongestExcerpt)) +
                    " where a count is wanted");
  }
  return number;
}

std::uint64_t productOrMost(std::uint64_t a, std::uint64_t b) {
  constexpr std::uint64_t kMost = std::numeric_limits<std::uint64_t>::max();
  return b != 0 && a > kMost / b ? kMost : a * b;
}

} // namespace velmorn::tool
