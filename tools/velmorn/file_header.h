// The lines that a point cloud file begins with.
#ifndef VELMORN64_TOOLS_FILE_HEADER_H
#define VELMORN64_TOOLS_FILE_HEADER_H

#include <cstdint>
#include <string>
#include <vector>

namespace velmorn::tool {

// The header line by line, split into words, and what follows it.
struct FileHeader {
  std::vector<std::vector<std::string>> lines; // none of them empty; the last is the closing one
  std::uint64_t bodySize = 0;                  // bytes after the header
  std::string bodyStart;                       // the first of them, at most 8
};

// Reads up to and including the first line that begins with the word `last`. Throws ToolError when
// there is none within the first megabyte, and for a control character before it.
FileHeader readFileHeader(const std::string& path, const std::string& last);

// The whole number that a word of a header stands for. Throws ToolError that shows the word for
// anything else, also for a sign.
std::uint64_t headerNumber(const std::string& word);

// a * b, or the largest number when that is more.
std::uint64_t productOrMost(std::uint64_t a, std::uint64_t b);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_FILE_HEADER_H
