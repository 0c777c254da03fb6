// How a run of the tool fails, and how its messages are put into words.
#ifndef VELMORN64_TOOLS_TOOL_ERROR_H
#define VELMORN64_TOOLS_TOOL_ERROR_H

#include <cstddef>
#include <stdexcept>
#include <string>

namespace velmorn::tool {

// A failed run. what() is the reason for the user and names the camera or file.
class ToolError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// The text in double quotes.
std::string inQuotes(const std::string& text);

// "1 image", "2 images".
std::string counted(std::size_t number, const std::string& noun);

// The text with every run of line ends, tabs and other control characters as one blank, so that it
// prints on one line.
std::string oneLine(const std::string& text);

// The last part of a path, for progress lines.
std::string fileName(const std::string& path);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_TOOL_ERROR_H
