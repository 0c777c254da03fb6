// How the tool's messages are put into words.
#include "velmorn/tool_error.h"

#include <filesystem>

namespace velmorn::tool {
namespace {

bool isControl(char c) {
  const auto code = static_cast<unsigned char>(c);
  return code < 0x20 || code == 0x7f;
}

} // namespace

std::string inQuotes(const std::string& text) { return '"' + text + '"'; }

std::string counted(std::size_t number, const std::string& noun) {
  return std::to_string(number) + ' ' + noun + (number == 1 ? "" : "s");
}

std::string oneLine(const std::string& text) {
  std::string line;
  bool blankDue = false;
  for (const char c : text) {
    if (isControl(c)) {
      blankDue = true;
      continue;
    }
    if (blankDue && !line.empty() && line.back() != ' ' && c != ' ') line += ' ';
    blankDue = false;
    line += c;
  }
  return line;
}

std::string fileName(const std::string& path) {
  return std::filesystem::path(path).filename().string();
}

} // namespace velmorn::tool
