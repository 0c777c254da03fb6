// Runs a program as a user would.
#ifndef VELMORN64_TESTS_TOOLS_PROCESS_H
#define VELMORN64_TESTS_TOOLS_PROCESS_H

#include <filesystem>
#include <string>
#include <vector>

namespace velmorn::tool {

struct ProcessResult {
  int status = -1; // exit status; 128 + the signal's number for a program that was killed
  std::string out; // standard output
  std::string err; // standard error
};

// Runs the program with the arguments, without a shell, in the working directory. Throws when it
// cannot be started.
ProcessResult runProcess(const std::string& program, const std::vector<std::string>& arguments,
                         const std::filesystem::path& workingDirectory);

// The last line of a text, without its end.
std::string lastLine(const std::string& text);

} // namespace velmorn::tool

#endif // VELMORN64_TESTS_TOOLS_PROCESS_H
